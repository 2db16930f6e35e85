// What targets of files that are read as objects share: a context that counts messages, and the way of an
// object into files and back.
#pragma once

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include <korvane.h>

#include "fuzz_input.h"

namespace korvane::fuzz {

/// Owns a context whose messages are counted.
class CountingContext {
  public:
    CountingContext() { korvane_context_set_message_callback(context, count, &messages); }
    ~CountingContext() { korvane_context_delete(context); }
    CountingContext(const CountingContext &) = delete;
    CountingContext &operator=(const CountingContext &) = delete;
    operator korvane_context_t *() const { return context; }

    int messages = 0;

  private:
    static korvane_status_t count(korvane_message_t *, void *messages)
    {
        ++*static_cast<int *>(messages);
        return STATUS_OK;
    }

    korvane_context_t *context = korvane_context_new();
};

/// What `write` makes of an object.
template <class Object, class Write>
std::string written(const Object *object, const std::string &name, Write write)
{
    require(write(object, name.c_str()) == STATUS_OK);
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// Writes an object, which is read back from both encodings; from the binary one it is the same. `extension`
/// is that of texts.
template <class Object, class Read, class Write>
void require_round_trip(const Object *object, const std::string &extension, Read read, Write write)
{
    const std::string text = file_name("-again" + extension);
    const std::string binary = text + "b";
    const std::string content = written(object, binary, write);
    const Object *again = read(binary.c_str());
    require(again != nullptr && written(again, binary, write) == content);
    written(object, text, write);
    require(read(text.c_str()) != nullptr);
    std::remove(text.c_str());
    std::remove(binary.c_str());
}

} // namespace korvane::fuzz
