// The tag system of a model, and the answers of a model that has none: there every tag stands for itself.
#include "cad/accessors.h"

extern "C" {

korvane_status_t korvane_cad_set_tag_system(korvane_cad_t *cad, korvane_tag_system_t *tag_system)
{
    // Kept on purpose: an earlier tag system is forgotten, not deleted, because the client may still use it.
    return korvane::set_field(cad, &korvane_cad_t::tag_system, tag_system);
}

korvane_status_t korvane_cad_get_tag_system(const korvane_cad_t *cad, korvane_tag_system_t **tag_system)
{
    return korvane::get_field(cad, &korvane_cad_t::tag_system, tag_system);
}

korvane_status_t korvane_cad_get_composite_tag_list(const korvane_cad_t *cad, int32_t *count, int32_t *list)
{
    if (cad == nullptr || count == nullptr || list == nullptr)
        return STATUS_ERROR;
    if (cad->tag_system != nullptr)
        return korvane_tag_system_get_composite_tag_list(cad->tag_system, count, list);
    *count = 0;
    *list = 0;
    return STATUS_OK;
}

korvane_status_t korvane_cad_get_composite_tag_definition(
    const korvane_cad_t *cad, int32_t tag, int32_t *count, int32_t *base_tags)
{
    if (cad == nullptr || count == nullptr || base_tags == nullptr)
        return STATUS_ERROR;
    if (cad->tag_system != nullptr)
        return korvane_tag_system_get_composite_tag_defintion(cad->tag_system, tag, count, base_tags);
    *count = 1;
    *base_tags = tag;
    return STATUS_OK;
}

} // extern "C"
