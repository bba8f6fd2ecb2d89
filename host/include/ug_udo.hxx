#ifndef UG_UDO_HXX_INCLUDED
#define UG_UDO_HXX_INCLUDED

#include "ug_displayable.hxx"

#include <string>
#include <vector>

// addX appends. setX replaces in place and must bring as many elements as are stored (links: of
// that type); any other count is a UgException. A null link is legal.
class DllExport UgUDO : public UgDisplayableObject {
public:
    unsigned int askClassId() const;

    std::vector<int> getInts() const;
    void setInts(const std::vector<int> &values);
    void addInts(const std::vector<int> &values);
    std::vector<double> getDoubles() const;
    void setDoubles(const std::vector<double> &values);
    void addDoubles(const std::vector<double> &values);
    std::vector<std::string> getStrings() const;
    void setStrings(const std::vector<std::string> &values);
    void addStrings(const std::vector<std::string> &values);
    std::vector<double> getLengths() const;
    void setLengths(const std::vector<double> &values);
    void addLengths(const std::vector<double> &values);
    std::vector<double> getAreas() const;
    void setAreas(const std::vector<double> &values);
    void addAreas(const std::vector<double> &values);
    std::vector<double> getVolumes() const;
    void setVolumes(const std::vector<double> &values);
    void addVolumes(const std::vector<double> &values);

    std::vector<UgObject *> getLinks(unsigned int type) const;
    void setLinks(unsigned int type, const std::vector<UgObject *> &objects);
    void addLinks(unsigned int type, const std::vector<UgObject *> &objects);
    std::vector<UgObject *> getOwnedObjects() const;

protected:
    UgUDO() = default;
    ~UgUDO() override;
    friend class UgWrapperTable;
};

#endif
