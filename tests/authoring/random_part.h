// Definition records as any program may have written them: first-generation locations, odd texts and
// numbers, unknown codes, owned records in any order.
#pragma once

#include "definitions/block_def.h"
#include "definitions/block_location_v1.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

// Written into the work part through the definition classes. The same seed gives the same records.
class RandomPart {
public:
    explicit RandomPart(unsigned seed) : m_random(seed) {}

    void write()
    {
        for (int i = below(4); i >= 0; --i) {
            switch (below(6)) {
            case 0:
                format();
                break;
            case 1:
                field();
                break; // that nobody owns
            default:
                block();
                break;
            }
        }
    }

private:
    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

    std::string text()
    {
        static const char *const texts[] = {"",
                                            "01",
                                            "no",
                                            "1.10",
                                            "~",
                                            "null",
                                            "a: b",
                                            "- x",
                                            " blank ",
                                            "# no",
                                            "{}",
                                            "M\xfcller",
                                            "Gr\xc3\xb6\xc3\x9f"
                                            "e",
                                            "\x01\x7f\x80\xff",
                                            "\"\\'",
                                            "a\tb",
                                            "\xe2\x80\xa8",
                                            "<O>",
                                            "TITLE",
                                            "!bytes x",
                                            "\xef\xbb\xbf"};
        if (below(3)) return texts[below(std::size(texts))];
        std::string random;
        for (int n = below(12); n > 0; --n) random += static_cast<char>(1 + below(255));
        return random;
    }

    std::vector<std::string> texts()
    {
        std::vector<std::string> list(static_cast<std::size_t>(below(4)));
        for (std::string &one : list) one = text();
        return list;
    }

    double real()
    {
        switch (below(8)) {
        case 0:
            return std::numeric_limits<double>::quiet_NaN();
        case 1:
            return std::bit_cast<double>(0xfff8000000000000u | (m_random() & 0xffff));
        case 2:
            return below(2) ? HUGE_VAL : -HUGE_VAL;
        case 3:
            return -0.0;
        case 4:
            return std::bit_cast<double>(static_cast<std::uint64_t>(m_random()) << 20 | 1);
        case 5:
            return 0.1 * below(1000);
        case 6:
            return std::bit_cast<double>(std::uint64_t{m_random()} << 32 | m_random());
        default:
            return below(500);
        }
    }

    int code()
    {
        switch (below(4)) {
        case 0:
            return std::numeric_limits<int>::min();
        case 1:
            return std::numeric_limits<int>::max();
        case 2:
            return static_cast<int>(m_random());
        default:
            return below(10);
        }
    }

    TrFieldDefV1 field()
    {
        TrFieldDefV1 field;
        field.SetId(text());
        if (below(2)) field.SetTextFontName(text());
        if (below(2)) field.SetDefaultString(texts());
        if (below(2)) field.SetTextSize(real());
        if (below(2)) field.SetCharSpaceFactor(real());
        if (below(2)) field.SetTextSite(code());
        if (below(2)) field.SetSyncAllDrawings(code());
        return field;
    }

    TrTableDefV1 table()
    {
        TrTableDefV1 table;
        table.SetId(text());
        if (below(2)) table.SetSymbolSize(real());
        if (below(2)) table.SetDirection(code());
        for (int n = below(4); n > 0; --n) table.AddFieldDefinition(field());
        return table;
    }

    boost::shared_ptr<QelFmt::BlockLocationBase> location()
    {
        const auto location = QelFmt::BlockLocationBase::createBlockLocation();
        location->SetFormatId(text());
        for (int n = below(3); n > 0; --n) {
            const auto size = QelFmt::SizeLocationBase::createSizeLocation();
            size->SetSizeId(text());
            for (int k = below(3); k > 0; --k) {
                const auto place = QelFmt::LocationBase::createLocation();
                place->SetName(text());
                place->SetX(real());
                place->SetY(real());
                if (below(2)) place->SetOffsetType(code());
                size->addLocation(place);
            }
            location->addSizeLocation(size);
        }
        return location;
    }

    boost::shared_ptr<QelFmt::BlockLocationBase> oldLocation()
    {
        boost::shared_ptr<QelFmt::TrBlockLocationV1> old(new QelFmt::TrBlockLocationV1);
        old->SetFormatId(text());
        old->SetSizeNames(texts());
        for (unsigned n = static_cast<unsigned>(below(4)), i = 0; i < n; ++i) {
            old->SetSizeXLoc(i, real());
            if (below(4)) old->SetSizeYLoc(i, real());
        }
        if (below(2)) old->SetOffsetType(code());
        return old;
    }

    void block()
    {
        TrBlockDefV1 block;
        if (below(2)) block.SetCategory(text());
        block.SetId(text());
        block.SetPatternName(text());
        if (below(2)) block.SetExcludeBlockIds(texts());
        if (below(2)) block.SetMovable(code());
        for (int n = below(6); n > 0; --n) {
            switch (below(4)) { // in any order among each other
            case 0:
                block.addBlockLocation(location());
                break;
            case 1:
                block.addBlockLocation(oldLocation());
                break;
            case 2:
                block.AddTableDefinition(table());
                break;
            default:
                block.AddFieldDefinition(field());
                break;
            }
        }
    }

    void format()
    {
        TrFormatDefV1 format;
        format.SetId(text());
        if (below(2)) format.SetRequiredBlockIds(texts());
        if (below(2)) format.SetUnits(code());
        for (int n = below(3); n > 0; --n) {
            TrFormatSizeV1 size;
            size.SetId(text());
            if (below(2)) size.SetVertZoneLength(real());
            if (below(2)) size.SetVertZoneType(code());
            format.AddSize(size);
        }
    }

    std::mt19937 m_random;
};
