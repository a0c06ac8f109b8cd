#include "api/clip_records.h"
#include "api/name_lists.h"
#include "connection/text.h"

#include <algorithm>

using namespace ZAVL3;

namespace
{

using MetadataList = std::vector<Metadata>;

// The first pair with the key is the only one that is ever seen or changed.
template <typename List>
auto find_pair(List& list, const AString& key)
{
    return std::find_if(list.begin(), list.end(),
                        [&](const Metadata& pair) { return pair.get<"Key">() == key; });
}

const Metadata* find_metadata(const ClipInfo& info, const AString& key)
{
    const Maybe<MetadataList>& list = info.get<"MetadataList">();
    if (!list.has) {
        return nullptr;
    }
    const auto found = find_pair(list.value, key);
    return found == list.value.end() ? nullptr : &*found;
}

Metadata make_pair(const AString& key, const AString& value)
{
    Metadata pair;
    pair.set<"Key">(key);
    pair.set<"Value">(value);
    return pair;
}

} // namespace

VeltoResult velto_clip_get_meta(VeltoRecordHandle record, const VeltoChar* key,
                                VeltoTextBuffer value)
{
    AString text;
    const VeltoResult result = read_record(record, [&](const ClipInfo& info) {
        if (const Metadata* pair = find_metadata(info, text_from_units(key))) {
            text = pair->get<"Value">();
        }
    });
    copy_text(text, value);
    return result;
}

VeltoResult velto_clip_has_meta(VeltoRecordHandle record, const VeltoChar* key, uint32_t* has)
{
    bool found = false;
    const VeltoResult result = read_record(record, [&](const ClipInfo& info) {
        found = find_metadata(info, text_from_units(key)) != nullptr;
    });
    if (has != nullptr) {
        *has = found;
    }
    return result;
}

// On a record that came without a list the pair is stored and stays unseen until the clip is opened
// again: the list counts as absent still. Wanted.
VeltoResult velto_clip_set_meta(VeltoRecordHandle record, const VeltoChar* key,
                                const VeltoChar* value)
{
    const Metadata pair = make_pair(text_from_units(key), text_from_units(value));
    return update_record(
        record, [&](ClipAttrChange& change) { change.set<"MetadataList">(MetadataList{pair}); },
        [&](ClipInfo& info) {
            MetadataList& list = info.get<"MetadataList">().value;
            const auto found = find_pair(list, pair.get<"Key">());
            if (found == list.end()) {
                list.push_back(pair);
            } else {
                *found = pair;
            }
        });
}

// The server is asked also for a key that the record has not.
VeltoResult velto_clip_delete_meta(VeltoRecordHandle record, const VeltoChar* key)
{
    const AString name = text_from_units(key);
    return update_record(
        record, [&](ClipAttrChange& change) { change.set<"KeyList">(std::vector<AString>{name}); },
        [&](ClipInfo& info) {
            MetadataList& list = info.get<"MetadataList">().value;
            const auto found = find_pair(list, name);
            if (found != list.end()) {
                list.erase(found);
            }
        });
}

VeltoResult velto_clip_open_metakeys(VeltoRecordHandle record, VeltoListHandle* list)
{
    return read_record(record, [=](const ClipInfo& info) {
        if (list == nullptr) {
            return;
        }
        NameListBuilder names;
        if (info.get<"MetadataList">().has) {
            for (const Metadata& pair : info.get<"MetadataList">().value) {
                names.append(pair.get<"Key">());
            }
        }
        *list = name_lists().add(names.finish());
    });
}

VeltoResult velto_get_metakey(VeltoListHandle list, VeltoTextBuffer key)
{
    return take_name(list, key);
}

VeltoResult velto_close_metakeys(VeltoListHandle list)
{
    close_names(list);
    return result_ok();
}
