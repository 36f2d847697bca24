#pragma once

namespace velmo::Renderer {

/// Lets Qt Quick draw in software where there is no GPU: that costs a third of the memory of a GL
/// driver in software. Text looks the same either way. `QT_QUICK_BACKEND` and `QSG_RHI_BACKEND`
/// win. Before the first window.
void choose();

} // namespace velmo::Renderer
