#include "VelmoUI/Modules/Notes/NotesModule.h"

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/Notes/NotesPageModel.h"

namespace velmo {

NotchModule::View NotesModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Notes/NotesPage.qml")),
            std::make_unique<NotesPageModel>(context.services)};
}

} // namespace velmo
