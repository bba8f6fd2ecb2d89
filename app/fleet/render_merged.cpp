#include "app/fleet/render_merged.h"

#include "app/document_info.h"
#include "app/fleet/interrupts.h"
#include "app/fleet/output_file.h"
#include "app/fleet/progress.h"
#include "app/output.h"
#include "app/picture.h"
#include "app/problem.h"

#include "display/pdf_document.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <filesystem>

namespace app::fleet {

namespace {

class Merge {
public:
    Merge(const Options &options, const RenderManyArguments &arguments)
        : m_options(options), m_arguments(arguments), m_work(options, false),
          m_document(arguments.options)
    {}

    int run(const std::vector<Found> &found)
    {
        const InterruptGuard guard;
        const std::vector<Found> good = lookAt(found);
        if (!InterruptGuard::interrupted() && m_pages == 0)
            throw Problem(m_arguments.output + ": no sheet to draw: nothing is written");
        const bool done = !InterruptGuard::interrupted() && (m_options.dryRun || write(good));
        if (!done) {
            fmt::print(stderr, "qelfmt: interrupted: {} is not written\n", m_arguments.output);
            return kInterruptedStatus;
        }
        tell();
        return good.size() < found.size() ? kInput : kFine;
    }

private:
    // Every drawing that can be read, whole: one that fails leaves no page.
    std::vector<Found> lookAt(const std::vector<Found> &found)
    {
        std::vector<Found> good;
        Progress progress(m_options, found.size(), 0);
        for (const Found &one : found) {
            if (InterruptGuard::interrupted()) break;
            const auto failed = [&](const std::string &why) {
                progress.clear();
                fmt::print(stderr, "qelfmt: {}\n", why);
            };
            try {
                std::size_t pages = 0;
                open(one, [&](const host::display::DisplayList &page) {
                    m_pdf.look(page);
                    ++pages;
                });
                m_pages += pages;
                good.push_back(one);
            } catch (const UgException &failure) {
                failed(fmt::format("{}: {} ({})", one.path, failure.askErrorText(),
                                   failure.askErrorCode()));
            } catch (const std::exception &failure) {
                failed(failure.what());
            }
            m_work.close();
            progress.ended(one.path);
        }
        return good;
    }

    // False after an interrupt: nothing is written then.
    bool write(const std::vector<Found> &drawings)
    {
        OutputFile file(m_arguments.output);
        m_pdf.begin(m_document, [&](std::string_view bytes) {
            std::fwrite(bytes.data(), 1, bytes.size(), file.stream());
        });
        Progress progress(m_options, drawings.size(), 0);
        for (const Found &one : drawings) {
            if (InterruptGuard::interrupted()) return false;
            open(one, [&](const host::display::DisplayList &page) { m_pdf.add(page); });
            m_work.close();
            progress.ended(one.path);
        }
        const auto result = m_pdf.finish();
        file.finish();
        progress.clear();
        for (const std::string &note : notesOf(result)) printNote(m_options, note);
        return true;
    }

    template <class Take> void open(const Found &drawing, const Take &take)
    {
        m_work.open(drawing.path);
        const std::vector<SheetRef> sheets = sheetsOf(m_work);
        for (const SheetRef &sheet : sheets) {
            host::display::DisplayList page = host::display::displayList(sheet.tag);
            page.sheet = std::filesystem::path(drawing.name).stem().string() + ", " + sheet.name;
            take(page);
        }
        m_document = withDocumentInfo(m_document, sheets);
    }

    void tell() const
    {
        if (m_options.json)
            printJson(Json::array({m_arguments.output}));
        else
            printLine(fmt::format("{}: {}{}", m_arguments.output, counted(m_pages, "page"),
                                  m_options.dryRun ? " (nothing saved)" : ""));
    }

    const Options &m_options;
    const RenderManyArguments &m_arguments;
    Workspace m_work;
    host::display::RenderOptions m_document;
    host::display::PdfDocument m_pdf;
    std::size_t m_pages = 0;
};

} // namespace

std::vector<SheetRef> sheetsOf(const Workspace &work)
{
    std::vector<SheetRef> sheets = work.sheets();
    if (sheets.empty())
        throw Problem(work.path() + ": has no sheet: add one with 'qelfmt sheet add'");
    return sheets;
}

int renderMerged(const Options &options, const RenderManyArguments &arguments,
                 const std::vector<Found> &found)
{
    if (arguments.run.jobs > 0 || arguments.run.resume || !arguments.run.journal.empty())
        throw Problem("render: --merge makes one document, in one go: -j, --journal and --resume "
                      "are for a picture a drawing",
                      kUsage);
    return Merge(options, arguments).run(found);
}

} // namespace app::fleet
