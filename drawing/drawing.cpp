#include "drawing/drawing.h"

#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/block.h"
#include "drawing/format.h"
#include "drawing/hierarchy.h"
#include "drawing/links_to.h"
#include "drawing/sheet_of.h"
#include "drawing/sheet_size.h"
#include "drawing/zone.h"
#include "foundation/guarded_singleton.h"
#include "foundation/log.h"

#include "uf_draw.h"

#include <map>
#include <set>
#include <stdexcept>

namespace {

struct DrawingCache {
    std::map<unsigned int, boost::shared_ptr<TrDrawing>> byTag;
};

unsigned int currentSheet()
{
    tag_t sheet = NULL_TAG;
    UgException::throwOnFailure(UF_DRAW_ask_current_drawing(&sheet));
    if (sheet == NULL_TAG)
        throw std::runtime_error("No drawing sheet is current. Open the sheet to work on.");
    return sheet;
}

bool isAlive(tag_t object) { return UgObject::find(object) != nullptr; }

UgTypedObject *sheetObject(tag_t sheet)
{
    return dynamic_cast<UgTypedObject *>(UgObject::find(sheet));
}

} // namespace

// --- handles ------------------------------------------------------------------------------------

boost::shared_ptr<TrDrawing> TrDrawing::getDrawing(unsigned int tag)
{
    if (tag == NULL_TAG) tag = currentSheet();
    boost::shared_ptr<TrDrawing> &cached = QelFmt::GuardedSingleton<DrawingCache>::get().byTag[tag];
    if (!cached) {
        QELFMT_INFO << "Creating a new TrDrawing object for tag " << tag;
        cached.reset(new TrDrawing(tag));
    }
    // Bringing an older format up to date asks for this very handle: it has to stand in the cache
    // before that begins.
    const boost::shared_ptr<TrDrawing> handle = cached;
    handle->settleFormat();
    return handle;
}

boost::shared_ptr<TrDrawing> TrDrawing::getDrawing(const LumUg::UDO &udo)
{
    const tag_t above = formatAbove(udo.tag());
    if (above == NULL_TAG) return getDrawing(NULL_TAG);

    const auto format = boost::dynamic_pointer_cast<TrFormatBase>(LumUg::UDO::Create(above));
    if (!format) throw std::runtime_error("Problem retrieve drawing from UDO heirarchy");
    return getDrawing(sheetOf(*format));
}

TrDrawing::TrDrawing(unsigned int tag) : m_format(new TrFormatV1), m_tag(tag) {}

TrDrawing::~TrDrawing() = default;

// --- the format on the sheet ----------------------------------------------------------------------

// The format is searched for when the handle is new and when the one it held has died.
void TrDrawing::settleFormat()
{
    forgetDeadFormat();
    if (m_search != Search::toDo) return; // also while an upgrade below asks for this sheet
    m_search = Search::running;
    try {
        initFormat();
    } catch (...) {
        m_search = Search::toDo; // the next access tries again
        throw;
    }
    m_search = Search::done;
}

void TrDrawing::initFormat()
{
    const boost::shared_ptr<TrFormatBase> found = findFormat();
    if (!found) return;
    m_format = found; // before the upgrade, which looks at the sheet's format through this handle
    if (const boost::shared_ptr<TrFormatBase> fresh = found->checkAndUpgrade()) {
        found->remove();
        m_format = fresh;
    }
}

boost::shared_ptr<TrFormatBase> TrDrawing::findFormat() const
{
    const LinksTo sheet(m_tag);
    for (const UF_UDOBJ_link_t &link : sheet.links()) {
        const boost::shared_ptr<LumUg::UDO> udo = LumUg::UDO::Create(link.assoc_ug_tag);
        if (!udo) continue;
        QELFMT_INFO << "Found UDO associated with drawing";
        if (auto format = boost::dynamic_pointer_cast<TrFormatBase>(udo)) {
            QELFMT_INFO << "Found Format UDO associated with drawing";
            return format;
        }
    }
    return {};
}

// A record that was deleted behind the library's back leaves the format object, which callers may
// hold, unbound.
void TrDrawing::forgetDeadFormat() const
{
    const UgUDO *record = m_format->GetUdoObject();
    if (!record || record->isAlive()) return;
    static_cast<LumUg::UDO &>(*m_format) = LumUg::UDO();
    m_search = isAlive(m_tag) ? Search::toDo : Search::done;
}

bool TrDrawing::hasFormat() const
{
    forgetDeadFormat();
    return !m_format->IsNull();
}

boost::shared_ptr<TrFormatBase> TrDrawing::format() const
{
    forgetDeadFormat();
    return m_format;
}

void TrDrawing::addFormat(const boost::shared_ptr<TrFormatDefV1> &def, const TrFormatSizeV1 &size)
{
    format()->initialize(sheetObject(m_tag), def, size, {});
}

void TrDrawing::replaceFormat(const boost::shared_ptr<TrFormatDefV1> &def,
                              const TrFormatSizeV1 &size)
{
    std::set<std::string> offered;
    for (const auto &block : TrDefinitionFileManager::GetBlockDefinitions(def, "ALL", false))
        offered.insert(block->GetId());
    TrFormatBase::Blocks retained;
    for (boost::shared_ptr<TrBlockBase> &block : format()->getBlocks()) {
        if (!offered.contains(block->GetBlockDefName())) continue;
        m_format->retainBlock(block); // or it would go with the old format
        retained.push_back(block);
    }
    removeFormat();
    m_format->initialize(sheetObject(m_tag), def, size, retained);
}

void TrDrawing::removeFormat() { format()->remove(); }

void TrDrawing::updateFormat() { format()->updateDefinition(); }

bool TrDrawing::isFormatUptoDate() const { return !hasFormat() || !m_format->checkDefinition(); }

// --- the sheet -------------------------------------------------------------------------------------

Point2 TrDrawing::drawingSize() const
{
    UF_DRAW_info_t info{};
    UgException::throwOnFailure(UF_DRAW_ask_drawing_info(m_tag, &info));
    return sheetSize(info);
}

std::string TrDrawing::sizeLabel() const { return format()->sizeLabel(); }

int TrDrawing::frameLayer() const { return format()->frameLayer(); }

std::string TrDrawing::zone(const Point3 &point) const
{
    const Point2 size = drawingSize();
    const boost::shared_ptr<TrFormatBase> on = format();
    const double width = zoneLength(on->horzZoneLength(), on->numberHorzZones(), size[0]);
    const double height = zoneLength(on->vertZoneLength(), on->numberVertZones(), size[1]);
    QELFMT_VERBOSE << "zoneHeight = " << height << ", zoneWidth = " << width;
    if (width == 0.0 || height == 0.0)
        throw std::runtime_error("ZoneLength  properties or ZoneNum properties must be non-zero. ");

    // Columns count from the right frame line leftwards, rows from the sheet's lower edge.
    const int column = zoneIndex(size[0] - on->rightOffset() - point[0], width);
    const int row = zoneIndex(point[1], height);
    return zoneLabel(on->vertZoneType(), row) + zoneLabel(on->horzZoneType(), column);
}
