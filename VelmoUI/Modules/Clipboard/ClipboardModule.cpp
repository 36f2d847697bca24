#include "VelmoUI/Modules/Clipboard/ClipboardModule.h"

#include "VelmoUI/Modules/Clipboard/ClipboardPageModel.h"

namespace velmo {

NotchModule::View ClipboardModule::makeView(const ModuleContext &context)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Clipboard/ClipboardPage.qml")),
            std::make_unique<ClipboardPageModel>(context)};
}

} // namespace velmo
