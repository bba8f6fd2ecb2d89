#include "uf_part.h"

#include "model/calls.h"
#include "model/session.h"
#include "store/part_store.h"
#include "uf.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

using host::Part;
using host::Session;

namespace {

// --- names ------------------------------------------------------------------------------------------

fs::path absolutePath(const char *name) { return fs::absolute(name).lexically_normal(); }

constexpr const char *kExtensions[] = {".prt", ".qdraw"};

// The file as named, or with one of the extensions behind it.
fs::path existingFile(const char *name)
{
    const fs::path asked = absolutePath(name);
    std::error_code ignored;
    if (fs::exists(asked, ignored) || asked.has_extension()) return asked;
    for (const char *extension : kExtensions)
        if (fs::exists(asked.string() + extension, ignored)) return asked.string() + extension;
    return asked;
}

fs::path newFile(const char *name)
{
    const fs::path asked = absolutePath(name);
    return asked.has_extension() ? asked : fs::path(asked.string() + kExtensions[0]);
}

// --- failures ---------------------------------------------------------------------------------------

// What went wrong, in words: for the system log and for whoever asks (nxhost/control.h).
[[noreturn]] void refuse(int code, const std::string &message)
{
    Session &session = Session::get();
    session.lastPartMessage = message;
    session.syslog += message + "\n";
    throw host::Failure{code, message};
}

template <class F> decltype(auto) reportingStoreErrors(F &&body)
{
    try {
        return body();
    } catch (const host::store::StoreError &error) {
        refuse(error.code, error.message);
    }
}

void describeFailure(UF_PART_load_status_t *status, const std::string &file, int code)
{
    if (!status) return;
    status->failed = TRUE;
    status->n_parts = 1;
    status->file_names = static_cast<char **>(host::allocate(sizeof(char *)));
    status->file_names[0] = host::allocateText(file);
    status->statuses = static_cast<int *>(host::allocate(sizeof(int)));
    status->statuses[0] = code;
}

// --- opening ----------------------------------------------------------------------------------------

Part &load(const fs::path &file)
{
    std::error_code ignored;
    if (!fs::exists(file, ignored))
        refuse(UF_PART_err_file_not_found,
               "Part file \"" + file.string() + "\" was not found: check the name and the folder.");
    return reportingStoreErrors([&]() -> Part & {
        host::store::LoadedPart loaded = host::store::load(file.string());
        return Session::get().adoptPart(std::move(loaded.part), std::move(loaded.objects));
    });
}

enum class Then { quiet, display };

int open(const char *function, const char *part_name, tag_t *part, UF_PART_load_status_t *status,
         Then then)
{
    if (status) *status = {};
    if (part) *part = NULL_TAG;
    std::string file;
    const int code = host::call(function, [&] {
        host::require(part_name && *part_name, UF_err_bad_parameter_number_1);
        host::require(part != nullptr, UF_err_bad_parameter_number_2);
        Session &session = Session::get();
        session.lastPartMessage.clear();
        file = existingFile(part_name).string();
        if (const Part *loaded = session.partByName(file)) {
            *part = loaded->tag;
            refuse(UF_PART_err_already_loaded, "Part \"" + file + "\" is loaded already.");
        }
        Part &opened = load(file);
        if (then == Then::display) session.setDisplayPart(&opened);
        *part = opened.tag;
    });
    if (code && !file.empty()) describeFailure(status, file, code);
    return code;
}

// --- saving -----------------------------------------------------------------------------------------

Part &partToSave()
{
    Session::get().lastPartMessage.clear();
    Part *part = Session::get().workPartOrNull();
    if (!part) refuse(UF_PART_err_no_work_part, "There is no work part to save: open one first.");
    return *part;
}

// The part stays as it is when its file cannot be written.
void write(Part &part, const std::string &path)
{
    reportingStoreErrors([&] { host::store::save(part, path); });
}

void requireFree(const fs::path &file, const Part *unlessPart)
{
    std::error_code ignored;
    const Part *loaded = Session::get().partByName(file.string());
    if (loaded && loaded == unlessPart) return;
    if (loaded || fs::exists(file, ignored))
        refuse(UF_PART_err_file_exists, "Part file \"" + file.string() +
                                            "\" exists already: choose another name or open it.");
}

} // namespace

// --- opening and closing ----------------------------------------------------------------------------

int UF_PART_is_loaded(const char *part_name)
{
    return host::callForValue("UF_PART_is_loaded", 0, [&] {
        return part_name && Session::get().partByName(part_name) ? 1 : 0;
    });
}

tag_t UF_PART_ask_part_tag(const char *part_name)
{
    return host::callForValue("UF_PART_ask_part_tag", NULL_TAG, [&] {
        const Part *part = part_name ? Session::get().partByName(part_name) : nullptr;
        return part ? part->tag : NULL_TAG;
    });
}

int UF_PART_open(const char *part_name, tag_t *part, UF_PART_load_status_t *status)
{
    return open("UF_PART_open", part_name, part, status, Then::display);
}

int UF_PART_open_quiet(const char *part_name, tag_t *part, UF_PART_load_status_t *status)
{
    return open("UF_PART_open_quiet", part_name, part, status, Then::quiet);
}

int UF_PART_free_load_status(UF_PART_load_status_t *status)
{
    if (const int code = host::enterAnytime("UF_PART_free_load_status")) return code;
    if (!status) return UF_err_bad_parameter_number_1;
    for (int i = 0; i < status->n_parts; ++i) host::release(status->file_names[i]);
    host::release(status->file_names);
    host::release(status->statuses);
    status->n_parts = 0;
    status->file_names = nullptr;
    status->statuses = nullptr;
    return 0;
}

int UF_PART_close(tag_t part, int scope, int mode)
{
    return host::call("UF_PART_close", [&] {
        Session &session = Session::get();
        Part &closed = session.requirePart(part);
        host::require(scope == 0 || scope == 1, UF_err_bad_parameter_number_2);
        host::require(mode >= 0 && mode <= 2, UF_err_bad_parameter_number_3);
        host::require(mode != 2 || !closed.modified, UF_PART_err_modified);
        session.closePart(closed);
    });
}

int UF_PART_close_all(void)
{
    return host::call("UF_PART_close_all", [] {
        Session &session = Session::get();
        while (!session.parts().empty()) session.closePart(*session.parts().back());
    });
}

int UF_PART_new(const char *part_name, int units, tag_t *part)
{
    return host::call("UF_PART_new", [&] {
        host::require(part_name && *part_name, UF_err_bad_parameter_number_1);
        host::require(units == UF_PART_METRIC || units == UF_PART_ENGLISH,
                      UF_err_bad_parameter_number_2);
        host::require(part != nullptr, UF_err_bad_parameter_number_3);
        *part = NULL_TAG;
        Session::get().lastPartMessage.clear();
        const fs::path file = newFile(part_name);
        requireFree(file, nullptr);
        *part = Session::get().newPart(file.string(), units).tag;
    });
}

// --- saving -----------------------------------------------------------------------------------------

int UF_PART_save(void)
{
    return host::call("UF_PART_save", [] {
        Part &part = partToSave();
        write(part, part.path);
    });
}

// A part has no components here: the work part is all there is to save.
int UF_PART_save_work_only(void)
{
    return host::call("UF_PART_save_work_only", [] {
        Part &part = partToSave();
        write(part, part.path);
    });
}

int UF_PART_save_as(const char *new_name)
{
    return host::call("UF_PART_save_as", [&] {
        host::require(new_name && *new_name, UF_err_bad_parameter_number_1);
        Part &part = partToSave();
        const fs::path file = newFile(new_name);
        requireFree(file, &part);
        write(part, file.string());
    });
}

// --- looking ----------------------------------------------------------------------------------------

int UF_PART_is_modified(tag_t part)
{
    return host::callForValue("UF_PART_is_modified", 0,
                              [&] { return Session::get().requirePart(part).modified ? 1 : 0; });
}

int UF_PART_ask_part_name(tag_t part, char part_name[MAX_FSPEC_BUFSIZE])
{
    return host::call("UF_PART_ask_part_name", [&] {
        host::require(part_name != nullptr, UF_err_bad_parameter_number_2);
        const std::string &path = Session::get().requirePart(part).path;
        part_name[path.copy(part_name, MAX_FSPEC_BUFSIZE - 1)] = '\0';
    });
}

int UF_PART_ask_units(tag_t part, int *units)
{
    return host::call("UF_PART_ask_units", [&] {
        host::require(units != nullptr, UF_err_bad_parameter_number_2);
        *units = Session::get().requirePart(part).units;
    });
}

int UF_PART_ask_num_parts(void)
{
    return host::callForValue("UF_PART_ask_num_parts", 0,
                              [] { return static_cast<int>(Session::get().parts().size()); });
}

tag_t UF_PART_ask_nth_part(int n)
{
    return host::callForValue("UF_PART_ask_nth_part", NULL_TAG, [&] {
        const auto &parts = Session::get().parts();
        return n >= 0 && static_cast<std::size_t>(n) < parts.size()
                   ? parts[static_cast<std::size_t>(n)]->tag
                   : NULL_TAG;
    });
}

// --- display and work part --------------------------------------------------------------------------

tag_t UF_PART_ask_display_part(void)
{
    return host::callForValue("UF_PART_ask_display_part", NULL_TAG, [] {
        const Part *part = Session::get().displayPart();
        return part ? part->tag : NULL_TAG;
    });
}

int UF_PART_set_display_part(tag_t part)
{
    return host::call("UF_PART_set_display_part",
                      [&] { Session::get().setDisplayPart(&Session::get().requirePart(part)); });
}

tag_t UF_ASSEM_ask_work_part(void)
{
    return host::callForValue("UF_ASSEM_ask_work_part", NULL_TAG, [] {
        const Part *part = Session::get().workPartOrNull();
        return part ? part->tag : NULL_TAG;
    });
}

int UF_ASSEM_set_work_part(tag_t part)
{
    return host::call("UF_ASSEM_set_work_part", [&] {
        Session &session = Session::get();
        session.setWorkPart(part == NULL_TAG ? session.displayPart() : &session.requirePart(part));
    });
}
