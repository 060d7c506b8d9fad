// A transport that answers as a test tells it, without a network.

#pragma once

#include <deque>
#include <string>
#include <vector>

#include "symsrv/transport.h"

namespace symsrv_1_0::internal {

struct ScriptedAnswer {
  int status = 200;  ///< 0: no answer at all.
  std::string location = {};
  std::string retryAfter = {};
  std::string contentType = {};
  std::string body = "x";
  HopOutcome outcome = HopOutcome::kComplete;
  std::optional<std::uint64_t> contentLength = std::nullopt;
};

/// Gives the answers in turn, the last one for ever.
class ScriptedTransport final : public ITransport {
 public:
  explicit ScriptedTransport(std::deque<ScriptedAnswer> answers) : m_answers(std::move(answers)) {}

  HopResult get(const HopRequest& request, IHopSink& sink) override {
    m_requests.push_back(request.userInfo.empty() ? request.url
                                                  : request.userInfo + " at " + request.url);
    const ScriptedAnswer answer = m_answers.front();
    if (m_answers.size() > 1)
      m_answers.pop_front();
    if (answer.status == 0)
      return {answer.outcome, "no answer"};
    HopHeader header;
    header.status = answer.status;
    header.location = answer.location;
    header.retryAfter = answer.retryAfter;
    header.contentType = answer.contentType;
    header.contentLength = answer.contentLength;
    if (!sink.tick() || !sink.header(header) || !sink.write(answer.body.data(), answer.body.size()))
      return {HopOutcome::kStopped, {}};
    return {answer.outcome, {}};
  }

  std::vector<std::string> m_requests;

 private:
  std::deque<ScriptedAnswer> m_answers;
};

}  // namespace symsrv_1_0::internal
