#include "VelmoUI/Modules/NotchModule.h"

#include "VelmoUI/Notch/NotchViewModel.h"

namespace velmo {

void ModuleContext::close() const
{
    panel.send(NotchEvent::dismiss);
}

void ModuleContext::select(const QString &moduleID) const
{
    panel.selectModule(moduleID);
}

} // namespace velmo
