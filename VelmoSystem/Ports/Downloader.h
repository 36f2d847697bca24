#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

namespace velmo {

/// Gets files over HTTPS. Nothing is kept between two requests: no cache, no cookies, no
/// credentials, not even those in an address.
class Downloader {
public:
    /// What a server said of a file, so that it need not send it again (RFC 9110, section 8.8).
    struct Validators {
        QByteArray etag;
        QByteArray lastModified;

        bool operator==(const Validators &) const = default;
    };
    struct Request {
        QUrl url;
        QByteArray accept; ///< a media type
        Validators known;  ///< of what is kept from before
    };
    struct Result {
        enum class Kind {
            body,      ///< all of it
            unchanged, ///< it is as `known`; never without that
            refused,   ///< `status` says why
            failed,    ///< `problem` says why, and what to do about it
        } kind = Kind::failed;
        QByteArray body;       ///< unpacked
        Validators validators; ///< of the body, perhaps empty
        int status = 0;        ///< of the server's last answer, if there was one
        QString problem;       ///< whole sentences for the user
    };
    using Finished = std::function<void(const Result &)>;

    /// Of a body, once it is unpacked.
    static constexpr qsizetype mostBytes = qsizetype{32} * 1024 * 1024;
    static constexpr Seconds timeout{20}; ///< for all of a request
    static constexpr int mostRedirects = 5;

    virtual ~Downloader() = default;

    /// Calls `finished` once, later. Dropping what this gives ends the request, and nothing is
    /// called any more; the same holds for the end of the downloader. `finished` may do either.
    /// An address of HTTP is asked over TLS like one of HTTPS, another one fails; redirects lead to
    /// HTTPS only. Main thread only.
    [[nodiscard]] virtual std::shared_ptr<void> get(const Request &request, Finished finished) = 0;
};

} // namespace velmo
