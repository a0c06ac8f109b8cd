#include "connection/kv_store.h"
#include "connection/velto.h"

using WatchAccess = AProtectAccess<KVWatch>;

// The store is in the tables before the commands go out, so that nothing of the scan can miss it.
void VeltoConnObject::register_store(KVStore* kvstore, const std::u16string& folder)
{
    const WatchAccess l(watches);
    if (l->byStore.find(kvstore) != l->byStore.cend()) {
        A_REPORT("velto", "l->byStore.find (kvstore) == l->byStore.cend ()");
        return;
    }
    l->byStore.emplace(kvstore, folder);
    try {
        std::set<KVStore*>& readers = l->byFolder[folder];
        readers.insert(kvstore);
        if (readers.size() == 1) {
            watch(folder);
        }
        start_scan(folder);
    } catch (...) {
        unregister_store(kvstore); // it will never live
        throw;
    }
}

void VeltoConnObject::unregister_store(KVStore* kvstore)
{
    const WatchAccess l(watches);
    const auto it = l->byStore.find(kvstore);
    if (it == l->byStore.cend()) {
        A_REPORT("velto", "it != l->byStore.cend ()");
        return;
    }
    const auto entry = l->byStore.extract(it);
    const std::u16string& folder = entry.mapped();
    const auto it2 = l->byFolder.find(folder);
    if (it2 == l->byFolder.cend()) {
        A_REPORT("velto", "it2 != l->byFolder.cend ()");
        return;
    }
    it2->second.erase(kvstore);
    if (it2->second.empty()) {
        l->byFolder.erase(it2);
        unwatch(folder);
    }
}

// Memory that is exhausted leaves the server at it; what it then tells finds no reader.
void VeltoConnObject::unwatch(const std::u16string& folder)
{
    try {
        ZAVL3::command::unwatch_metadata_database command;
        command.set<"MetadataDatabase">(AString(folder));
        issue(command);
    } catch (const std::bad_alloc&) {
    }
}

// Nobody waits for the outcome: a server that refuses is not noticed.
void VeltoConnObject::watch(const std::u16string& folder)
{
    ZAVL3::command::watch_metadata_database command;
    command.set<"MetadataDatabase">(AString(folder));
    issue(command);
}

std::shared_ptr<KVScan> VeltoConnObject::get_scan(const std::u16string& folder)
{
    const AProtectAccess<KVScans> access(scans);
    std::shared_ptr<KVScan>& scan = access->byFolder[folder];
    if (!scan) {
        scan = std::make_shared<KVScan>();
    }
    return scan;
}

void VeltoConnObject::start_scan(const std::u16string& folder)
{
    const std::shared_ptr<KVScan> scan = get_scan(folder);
    scan->begin(scan);
    ZAVL3::command::download_metadata command;
    command.set<"MetadataDatabase">(AString(folder));
    issue(command, {bind<&KVScan::ok_delegate>(scan.get()), metadata_data,
                    bind<&KVScan::error_delegate>(scan.get())});
}

bool VeltoConnObject::wait_scan(const std::u16string& folder, std::uint32_t timeout_ms)
{
    return get_scan(folder)->wait(timeout_ms);
}

// What changed meanwhile comes with the scan, as a change like any other. What was erased meanwhile
// goes unnoticed: a scan only adds.
void VeltoConnObject::watch_and_scan_again()
{
    const WatchAccess l(watches);
    for (const auto& [folder, readers] : l->byFolder) {
        watch(folder);
        start_scan(folder);
    }
}

VeltoResult VeltoConnObject::metadata_set(ARef<VeltoConnObject> connection,
                                          const std::u16string& folder, const std::u16string& key,
                                          const std::u16string& value)
{
    ZAVL3::Metadata entry;
    entry.set<"Key">(AString(key));
    entry.set<"Value">(AString(value));
    ZAVL3::command::metadata_set command;
    command.set<"MetadataDatabase">(AString(folder));
    command.get<"MetadataList">().push_back(std::move(entry));
    return plain_command(connection, command);
}

VeltoResult VeltoConnObject::metadata_erase(ARef<VeltoConnObject> connection,
                                            const std::u16string& folder, const std::u16string& key)
{
    ZAVL3::command::metadata_erase command;
    command.set<"MetadataDatabase">(AString(folder));
    command.get<"KeyList">().push_back(AString(key));
    return plain_command(connection, command);
}

// The tables are held meanwhile: a store cannot leave them, and so cannot die, while it is told.
template <typename Report, typename List>
void VeltoConnObject::tell_stores(const Report& report, const List& list,
                                  void (KVStore::*tell)(const AString& prefix, const List& list))
{
    const WatchAccess l(watches);
    const auto found = l->byFolder.find(report.template get<"MetadataDatabase">().to_wide());
    if (found == l->byFolder.end()) {
        return;
    }
    for (KVStore* store : found->second) {
        (store->*tell)(report.template get<"MetadataPrefix">(), list);
    }
}

void VeltoConnObject::on_report_metadata_change(const ZAVL3::report::metadata_change& report)
{
    tell_stores(report, report.get<"MetadataList">(), &KVStore::on_metadata);
}

void VeltoConnObject::on_report_metadata_remove(const ZAVL3::report::metadata_remove& report)
{
    tell_stores(report, report.get<"KeyList">(), &KVStore::on_metadata_removed);
}

void VeltoConnObject::take_scanned(AString database, AString prefix,
                                   std::vector<ZAVL3::Metadata> list)
{
    ZAVL3::report::metadata_change report;
    report.set<"MetadataDatabase">(std::move(database));
    report.set<"MetadataPrefix">(std::move(prefix));
    report.set<"MetadataList">(std::move(list));
    on_report_metadata_change(report);
}
