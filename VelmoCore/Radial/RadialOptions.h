#pragma once

#include <boost/describe.hpp>

namespace velmo {

/// The key that opens the radial menu.
enum class RadialTrigger { fn, rightOption, rightCommand, off };
BOOST_DESCRIBE_ENUM(RadialTrigger, fn, rightOption, rightCommand, off)

enum class RadialSize { small, regular, large };
BOOST_DESCRIBE_ENUM(RadialSize, small, regular, large)

enum class RadialStyle { classic, glass };
BOOST_DESCRIBE_ENUM(RadialStyle, classic, glass)

enum class RadialRingKind { context, general, apps, music, captures, favorites };
BOOST_DESCRIBE_ENUM(RadialRingKind, context, general, apps, music, captures, favorites)

} // namespace velmo
