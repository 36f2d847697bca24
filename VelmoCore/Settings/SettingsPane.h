#pragma once

#include <boost/describe.hpp>

namespace velmo {

/// A page of the settings window.
enum class SettingsPane {
    general,
    appearance,
    displays,
    modules,
    smartNotch,
    radial,
    privacy,
    data,
    about,
};
BOOST_DESCRIBE_ENUM(SettingsPane, general, appearance, displays, modules, smartNotch, radial,
                    privacy, data, about)

} // namespace velmo
