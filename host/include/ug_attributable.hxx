// Objects that carry string attributes. Titles are compared exactly.
#ifndef UG_ATTRIBUTABLE_HXX_INCLUDED
#define UG_ATTRIBUTABLE_HXX_INCLUDED

#include "ug_object.hxx"

#include <string>
#include <vector>

class DllExport UgAttributableObject : public virtual UgObject {
public:
    bool hasStringAttribute(const std::string &title) const;             // never throws
    std::string getStringAttributeValue(const std::string &title) const; // missing: UgException
    void setStringAttributeValue(const std::string &title,
                                 const std::string &value); // missing: UgException
    void addStringAttribute(const std::string &title,
                            const std::string &value);         // already there: UgException
    void deleteStringAttribute(const std::string &title);      // missing: UgException
    std::vector<std::string> askStringAttributeTitles() const; // in order of creation

protected:
    ~UgAttributableObject() override;
};

#endif
