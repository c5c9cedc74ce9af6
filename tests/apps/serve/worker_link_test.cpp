// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/worker_link.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <unistd.h>

#include <string>

#include "apps/orvprint/process/transfer.h"

namespace {

/// Pumps until there is an answer. @return false if nothing arrives for a minute
bool WaitForAnswer(WorkerLink& link) {
    for (;;) {
        if (link.Pump()) return true;
        pollfd ready{link.GetDescriptor(), link.GetEvents(), 0};
        if (link.GetDescriptor() < 0 || poll(&ready, 1, 60'000) <= 0) return false;
    }
}

/// Waits until the worker is ready.
bool WaitUntilIdle(WorkerLink& link) {
    while (link.GetState() == WorkerLink::State::kStarting) {
        pollfd ready{link.GetDescriptor(), POLLIN, 0};
        if (poll(&ready, 1, 60'000) <= 0) return false;
        link.Pump();
        if (link.GetDescriptor() < 0) return false;
    }
    return true;
}

class WorkerLinkTest : public testing::Test {
protected:
    /// Starts a worker that sends `said` whatever it receives, and gives it a job when it is ready.
    void GiveJob(const std::string& said) {
        const auto work = [said](int socket) {
            SendBytes(socket, said.data(), said.size());
            char byte = 0;
            while (Receive(socket, byte)) {
            }
            return 0;
        };
        ASSERT_TRUE(forks_.Start([] { return 0; }, work));
        ASSERT_EQ(forks_.WaitUntilReady(), 0);
        ASSERT_TRUE(link_.Start(forks_, 1));
        ASSERT_TRUE(WaitUntilIdle(link_));
        link_.Give({JobKind::kPrint, 0, body_.size()}, "", body_);
    }
    static std::string Said(const AnswerHead& head, const std::string& body) {
        return std::string(1, kWorkerReady)
            .append(reinterpret_cast<const char*>(&head), sizeof head)
            .append(body);
    }

    ForkServer forks_;
    WorkerLink link_;

private:
    const std::string body_ = "<svg/>";
};

TEST_F(WorkerLinkTest, AnAnswerThatIsThereAtOnceIsNotLost) {
    AnswerHead head;
    head.code = 7;
    head.bodyBytes = 2;
    GiveJob(Said(head, "ab"));
    ASSERT_TRUE(WaitForAnswer(link_));
    EXPECT_EQ(link_.GetAnswer().code, 7);
    EXPECT_EQ(link_.TakeBody(), "ab");
    EXPECT_EQ(link_.GetState(), WorkerLink::State::kIdle);
}

TEST_F(WorkerLinkTest, AWorkerThatPromisesTooMuchIsNotListenedTo) {
    AnswerHead head;
    head.bodyBytes = ~std::uint64_t{0};
    GiveJob(Said(head, ""));
    EXPECT_FALSE(WaitForAnswer(link_));
    EXPECT_LT(link_.GetDescriptor(), 0);
}

}  // namespace
