/* A client in C: receives the lines that identify the library. */
#include <korvane.h>

#include <stdio.h>
#include <string.h>

static korvane_status_t receive(korvane_message_t *message, void *identified)
{
    const char *text = NULL;
    korvane_message_get_description(message, &text);
    puts(text);
    *(int *)identified = strstr(text, "$KorvaneAPI: ") == text;
    return STATUS_OK;
}

int main(void)
{
    int identified = 0;
    korvane_context_t *context = korvane_context_new();
    korvane_context_set_message_callback(context, receive, &identified);
    korvane_context_print_ident(context);
    korvane_context_delete(context);
    return identified ? 0 : 1;
}
