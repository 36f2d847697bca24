#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

namespace velmo {

/// Thrown by work that its user stopped.
class Cancelled : public LocalizedError {
public:
    Cancelled() : LocalizedError(QStringLiteral("Cancelado.")) {}
};

} // namespace velmo
