// Application-defined object classes.
#ifndef UG_EXTENSION_HXX_INCLUDED
#define UG_EXTENSION_HXX_INCLUDED

#include "ug_object.hxx"

#include <memory>
#include <string>

class UgTypedObject;

// A handle on the registration of one application-defined class. Copies share the registration;
// a second registration under one name keeps the first creator.
class DllExport UgDerivedClassManager {
public:
    UgDerivedClassManager() = default; // no class
    UgDerivedClassManager(const std::string &class_name, UgTypedObject *(*creator)());

    static UgDerivedClassManager find(const std::string &class_name); // no class when unknown
    std::string askClassName() const;                                 // empty without a class
    UgTypedObject *createInstance() const;                            // null without a class

private:
    struct Registration;
    std::shared_ptr<const Registration> m_registration;
};

class DllExport UgExtensionObject : public virtual UgObject {
protected:
    ~UgExtensionObject() override;
    virtual UgDerivedClassManager askClassManager() const;
};

#endif
