#include "nxhost/part_files.h"

#include "opencpp/member.h"

#include "model/session.h"
#include "store/part_store.h"
#include "store/salvage.h"
#include "uf_part.h"

#include <filesystem>

using host::Session;
using host::store::Finding;

namespace {

const char *kindOf(Finding::Kind kind)
{
    switch (kind) {
    case Finding::Kind::damage:
        return "damage";
    case Finding::Kind::dangling:
        return "dangling";
    case Finding::Kind::orphan:
        return "orphan";
    case Finding::Kind::condemned:
        return "condemned";
    }
    return "";
}

std::vector<nxhost::PartFinding> handOut(const std::vector<Finding> &findings)
{
    std::vector<nxhost::PartFinding> given;
    for (const Finding &finding : findings)
        given.push_back({kindOf(finding.kind), finding.object, finding.text, finding.mended});
    return given;
}

template <class F> auto reporting(const char *function, F &&body)
{
    return host::member(function, [&] {
        Session &session = Session::get();
        session.lastPartMessage.clear();
        try {
            return body();
        } catch (const host::store::StoreError &error) {
            session.lastPartMessage = error.message;
            session.syslog += error.message + "\n";
            throw host::Failure{error.code, error.message};
        }
    });
}

} // namespace

namespace nxhost {

PartCheck checkPartFile(const std::string &path, const PartRules &rules)
{
    return reporting("nxhost::checkPartFile", [&] {
        const host::store::Examination examined =
            host::store::examine(path, {rules.belowOthers, rules.onSheets});
        return PartCheck{examined.refusal, examined.objects, !examined.image.empty(),
                         handOut(examined.findings)};
    });
}

void saveWorkPartOver(const std::string &path)
{
    reporting("nxhost::saveWorkPartOver", [&] {
        host::Part &part = Session::get().workPart();
        const std::string file = std::filesystem::absolute(path).lexically_normal().string();
        const host::Part *loaded = Session::get().partByName(file);
        if (loaded && loaded != &part)
            throw host::store::StoreError{UF_PART_err_file_exists,
                                          file + ": this part is open: close it first."};
        host::store::saveOver(part, file);
    });
}

KeptPartFile::KeptPartFile(const std::string &path)
    : m_path(std::filesystem::absolute(path).lexically_normal().string())
{
    reporting("nxhost::KeptPartFile", [&] { host::store::keep(m_path); });
}

KeptPartFile::~KeptPartFile() { host::store::letGo(m_path); }

PartSalvage salvagePartFile(const std::string &path, const std::string &new_path)
{
    return reporting("nxhost::salvagePartFile", [&] {
        const host::store::Salvage result = host::store::salvage(path, new_path);
        return PartSalvage{result.objects, handOut(result.lost)};
    });
}

} // namespace nxhost
