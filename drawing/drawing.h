// The library's handle on one drawing sheet.
#pragma once

#include "udo/export.h"

#include "point2.hxx"
#include "point3.hxx"

#include <boost/shared_ptr.hpp>

#include <string>

namespace LumUg {
class UDO;
}
class TrFormatBase;
class TrFormatDefV1;
class TrFormatSizeV1;

// Knows the sheet's tag and the one format that stands on it. Handles are shared and cached by tag
// for the life of the process: every access to a sheet meets the same object.
class QELFMT_API TrDrawing {
public:
    // The handle of a sheet; tag 0 is the current sheet of the work part.
    static boost::shared_ptr<TrDrawing> getDrawing(unsigned int tag);
    // The handle of the sheet that a block, field, table, entry, ... stands on. A record that hangs
    // below no format answers with the current sheet.
    static boost::shared_ptr<TrDrawing> getDrawing(const LumUg::UDO &udo);

    ~TrDrawing();
    TrDrawing(const TrDrawing &) = delete;
    TrDrawing &operator=(const TrDrawing &) = delete;

    bool hasFormat() const;                         // false again once the format's record is gone
    boost::shared_ptr<TrFormatBase> format() const; // never empty; unbound without a format
    unsigned int drawingTag() const { return m_tag; }

    void addFormat(const boost::shared_ptr<TrFormatDefV1> &def, const TrFormatSizeV1 &size);
    // Blocks that the new definition also has keep their records, and so their values.
    void replaceFormat(const boost::shared_ptr<TrFormatDefV1> &def, const TrFormatSizeV1 &size);
    void removeFormat();
    void updateFormat();
    bool isFormatUptoDate() const; // true without a format

    // Width and height, in the units that the sheet's size is given in.
    Point2 drawingSize() const;
    std::string sizeLabel() const;
    int frameLayer() const;
    // The zone that a point of the sheet lies in: row label, then column label.
    std::string zone(const Point3 &point) const;

private:
    enum class Search { toDo, running, done };

    explicit TrDrawing(unsigned int tag);
    void settleFormat();
    void initFormat();
    boost::shared_ptr<TrFormatBase> findFormat() const;
    void forgetDeadFormat() const;

    boost::shared_ptr<TrFormatBase> m_format;
    unsigned int m_tag;
    mutable Search m_search = Search::toDo; // for the format, and its upgrade
};
