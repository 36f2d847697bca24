#include "VelmoUI/Modules/Shelf/ShelfModule.h"

#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"

namespace velmo {

NotchModule::View ShelfModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Shelf/ShelfPage.qml")),
            std::make_unique<ShelfPageModel>(context)};
}

} // namespace velmo
