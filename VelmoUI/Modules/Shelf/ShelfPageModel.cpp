#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"

namespace velmo {

ShelfPageModel::ShelfPageModel(const ModuleContext &context) : m_context(context)
{
}

} // namespace velmo
