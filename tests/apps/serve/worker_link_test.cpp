// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/worker_link.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <unistd.h>

#include "apps/orvprint/process/transfer.h"

namespace {

/// Goes on until there is an answer. @return false when there is none for a minute
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

TEST(WorkerLinkTest, AnAnswerThatIsThereAtOnceIsNotLost) {
    ForkServer forks;
    // It answers before it is asked, in one piece with its first byte.
    ASSERT_TRUE(forks.Start([] { return 0; },
                            [](int socket) {
                                AnswerHead head;
                                head.code = 7;
                                head.bodyBytes = 2;
                                std::string bytes(1, kWorkerReady);
                                bytes.append(reinterpret_cast<const char*>(&head), sizeof head).append("ab");
                                SendBytes(socket, bytes.data(), bytes.size());
                                char byte = 0;
                                while (Receive(socket, byte)) {
                                }
                                return 0;
                            }));
    ASSERT_EQ(forks.WaitUntilReady(), 0);
    WorkerLink link;
    ASSERT_TRUE(link.Start(forks, 1));
    ASSERT_TRUE(WaitUntilIdle(link));
    const std::string body = "<svg/>";
    link.Give({JobKind::kPrint, 0, body.size()}, "", body);
    ASSERT_TRUE(WaitForAnswer(link));
    EXPECT_EQ(link.GetAnswer().code, 7);
    EXPECT_EQ(link.TakeBody(), "ab");
    EXPECT_EQ(link.GetState(), WorkerLink::State::kIdle);
}

TEST(WorkerLinkTest, AWorkerThatPromisesTooMuchIsNotListenedTo) {
    ForkServer forks;
    ASSERT_TRUE(forks.Start([] { return 0; },
                            [](int socket) {
                                AnswerHead head;
                                head.bodyBytes = ~std::uint64_t{0};
                                Send(socket, kWorkerReady);
                                Send(socket, head);
                                char byte = 0;
                                while (Receive(socket, byte)) {
                                }
                                return 0;
                            }));
    ASSERT_EQ(forks.WaitUntilReady(), 0);
    WorkerLink link;
    ASSERT_TRUE(link.Start(forks, 1));
    ASSERT_TRUE(WaitUntilIdle(link));
    const std::string body;
    link.Give({}, "", body);
    EXPECT_FALSE(WaitForAnswer(link));
    EXPECT_LT(link.GetDescriptor(), 0);
}

}  // namespace
