#pragma once

#include "VelmoCore/Clipboard/ClipImageWriter.h"
#include "VelmoCore/Clipboard/ClipItem.h"

#include <QMimeData>

#include <memory>

namespace velmo::ClipDrag {

/// Under which a drag gives Orvane's own pages the item's id.
inline constexpr QStringView idType = u"application/x-orvane-clip";

/// A text as text, a link as URL too, files as URLs, an image as PNG, which is read once a target
/// asks for it.
std::unique_ptr<QMimeData> mimeData(const ClipItem &item, const ClipImageWriter &images);

} // namespace velmo::ClipDrag
