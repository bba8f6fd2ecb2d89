#include "foundation/qel_object.h"

UgDerivedClassManager QelObject::m_class_manager("QelObject", QelObject::createDerivedInstance);

QelObject::QelObject() = default;

QelObject::~QelObject() = default;

UgTypedObject *QelObject::createDerivedInstance() { return new QelObject; }

UgDerivedClassManager QelObject::askClassManager() const { return m_class_manager; }
