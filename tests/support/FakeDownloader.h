#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/Downloader.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <vector>

namespace velmo {

/// Answers by script, one answer a request, when the scheduler runs what was posted.
class FakeDownloader : public Downloader {
public:
    explicit FakeDownloader(Scheduler &scheduler) : m_scheduler(scheduler) {}

    [[nodiscard]] std::shared_ptr<void> get(const Request &request, Finished finished) override
    {
        requests.push_back(request);
        const auto call = std::make_shared<Finished>(std::move(finished));
        m_scheduler.post([call = std::weak_ptr(call), result = next(request.url)] {
            if (const auto waiting = call.lock())
                (*waiting)(result);
        });
        return call;
    }

    static Result body(const QByteArray &text, const Validators &validators = {})
    {
        return {.kind = Result::Kind::body, .body = text, .validators = validators, .status = 200};
    }
    static Result unchanged() { return {.kind = Result::Kind::unchanged, .status = 304}; }
    static Result refused(int status) { return {.kind = Result::Kind::refused, .status = status}; }
    static Result failed(const QString &problem) { return {.problem = problem}; }

    std::map<QUrl, std::deque<Result>> answers; ///< in turn; asking for more fails the test
    std::vector<Request> requests;

private:
    Result next(const QUrl &url)
    {
        auto &waiting = answers[url];
        if (waiting.empty()) {
            ADD_FAILURE() << "no answer for " << url.toString().toStdString();
            return failed(QStringLiteral("Nenhuma resposta."));
        }
        const Result result = std::move(waiting.front());
        waiting.pop_front();
        return result;
    }

    Scheduler &m_scheduler;
};

} // namespace velmo
