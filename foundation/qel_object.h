// The library's own object class, known to the platform's derived-class mechanism.
#pragma once

#include "udo/export.h"

#include "ug_extension.hxx"
#include "ug_point.hxx"

class QELFMT_API QelObject : public UgPoint {
public:
    QelObject();
    ~QelObject() override;

    static UgTypedObject *createDerivedInstance(); // new, without a tag; the caller owns it

protected:
    UgDerivedClassManager askClassManager() const override;

private:
    static UgDerivedClassManager m_class_manager;
};
