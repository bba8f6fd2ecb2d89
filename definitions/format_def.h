// What a drawing format is: its sizes and the blocks that every drawing of it must carry.
#pragma once

#include "definitions/format_size.h"
#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include <string>
#include <tuple>
#include <vector>

// A record of a definition file, or the copy that a placed format keeps of it. Owns its sizes.
class QELFMT_API TrFormatDefV1 : public LumUg::UDO {
public:
    static constexpr const char *className = QelFmt::kFormatDefV1Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::AttributeSlot kId{"FORMAT_ID", "Id"}; // every definition must have it
    static constexpr LumUg::AttributeSlot kCategory{"CATEGORY", "Category"}; // of the menu

    static constexpr LumUg::StringSlot kDescription{0, "Description"};
    static constexpr LumUg::StringSlot kSuiteName{1, "SuiteName"}; // block locations match it
    static constexpr LumUg::StringTail kRequiredBlockIds{2, "RequiredBlockIds"};

    static constexpr LumUg::IntSlot kUnits{0, "Units"}; // 1 millimetres, any other inches
    static constexpr LumUg::IntSlot kObsolete{1, "Obsolete"};

    static constexpr std::tuple kLayout{
        kId, kCategory, kDescription, kSuiteName, kRequiredBlockIds, kUnits, kObsolete};
    static_assert(LumUg::isDense(kLayout));

    static constexpr LumUg::ChildList<TrFormatSizeV1> kSizes{LumUg::kChildLink, "Sizes"};
    static constexpr std::tuple kChildren{kSizes};

    TrFormatDefV1();
    explicit TrFormatDefV1(UgUDO *udo);
    TrFormatDefV1(const TrFormatDefV1 &) = default; // views the same record
    TrFormatDefV1 &operator=(const TrFormatDefV1 &) = default;
    ~TrFormatDefV1() override;

    std::string GetId() const; // without one: an error
    void SetId(const std::string &value) { set(kId, value); }
    std::string GetCategory() const { return get(kCategory); }
    void SetCategory(const std::string &value) { set(kCategory, value); }

    std::string GetDescription() const { return get(kDescription); }
    void SetDescription(const std::string &value) { set(kDescription, value); }
    std::string GetSuiteName() const { return get(kSuiteName); }
    void SetSuiteName(const std::string &value) { set(kSuiteName, value); }
    // Empty ids stay; unless only the stored ones are asked for, those that the site's settings add
    // follow.
    std::vector<std::string> GetRequiredBlockIds(bool stored_only) const;
    void SetRequiredBlockIds(const std::vector<std::string> &ids);

    int GetUnits() const { return get(kUnits); }
    void SetUnits(int value) { set(kUnits, value); }
    // The stored flag, or, when wanted, what the site's menu settings say of the format.
    bool GetObsolete(bool ask_site) const;
    void SetObsolete(bool obsolete) { set(kObsolete, obsolete ? 1 : 0); }

    std::vector<TrFormatSizeV1> GetAvailableSizes() const;    // in link order
    TrFormatSizeV1 GetSizeDef(const std::string &name) const; // unbound when there is none
    void AddSize(const TrFormatSizeV1 &size);
    void RemoveSize(const TrFormatSizeV1 &size); // deletes its record

    // Whether a block location for that suite is one for this format. "Default" is a suite of every
    // format: a block that is offered for all of them can also be placed on all of them.
    bool inSuite(const std::string &name) const;

    // The stored slots: what the site adds is never stored. Clones of the sizes are added to those
    // that are linked here already.
    void Clone(const TrFormatDefV1 &source);
    bool operator==(const TrFormatDefV1 &other) const;
    bool operator!=(const TrFormatDefV1 &other) const { return !(*this == other); }

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
