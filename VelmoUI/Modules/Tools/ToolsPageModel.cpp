#include "VelmoUI/Modules/Tools/ToolsPageModel.h"

namespace velmo {

ToolsPageModel::ToolsPageModel(const ModuleContext &context) : m_context(context)
{
}

} // namespace velmo
