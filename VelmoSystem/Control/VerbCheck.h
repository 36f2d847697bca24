#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Control/Verb.h"

namespace velmo {

/// A call that isn't as its verb is written.
class VerbUsageError : public LocalizedError {
public:
    using LocalizedError::LocalizedError;
};

/// Holds a call against the syntax of its verb. Throws `VerbUsageError`, whose text is for the
/// user.
namespace VerbCheck {

/// As many words as the arguments take.
void checkCount(const VerbSyntax &syntax, const QStringList &words);

/// The call with its paths made absolute, relative ones from `folder`; where that is empty, they
/// are refused. A word that begins with "file:" is a URL.
VerbCall checked(const VerbSyntax &syntax, VerbCall call, const QString &folder);

} // namespace VerbCheck
} // namespace velmo
