// The operation bus: registration, dispatch order and the queueing handler.
#include "transport/comm_bus.h"

#include <gtest/gtest.h>

#include <vector>

#include "transport/c_op_handler.h"

namespace {

class TestBus : public CommBus {
public:
    bool SendOperation(SsOp&) override { return true; }
};

class RecordingHandler : public iCommOpHandler {
public:
    RecordingHandler(std::vector<int>& log, int id) : m_log(log), m_id(id) {}
    bool HandleCommOp(KT::CSharedPtr<SsOp> op) override {
        m_log.push_back(m_id * 1000 + static_cast<int>(op->GetOpId()));
        return false;  // the result must not stop the others
    }

private:
    std::vector<int>& m_log;
    int m_id;
};

KT::CSharedPtr<SsOp> Op(unsigned id) { return KT::CSharedPtr<SsOp>(new SsOp(OP_TYPE_DATA, id)); }

}  // namespace

// Every handler in registration order whatever it answers; a handler is
// registered once and only a known one can be unregistered.
TEST(CommBus, DispatchesToEveryRegisteredHandlerInOrder) {
    std::vector<int> log;
    RecordingHandler a(log, 1), b(log, 2), stranger(log, 9);
    TestBus bus;
    KT::CSharedPtr<SsOp> alone = Op(3);  // without handlers the operation is released
    EXPECT_TRUE(bus.SendOpToHandlers(alone));
    EXPECT_EQ(alone.UseCount(), 1);
    EXPECT_TRUE(bus.RegisterOpHandler(&b));
    EXPECT_TRUE(bus.RegisterOpHandler(&a));
    EXPECT_FALSE(bus.RegisterOpHandler(&b));
    EXPECT_FALSE(bus.UnregisterOpHandler(&stranger));
    EXPECT_TRUE(bus.SendOpToHandlers(Op(7)));
    EXPECT_TRUE(bus.UnregisterOpHandler(&b));
    EXPECT_FALSE(bus.UnregisterOpHandler(&b));
    bus.SendOpToHandlers(Op(2));
    EXPECT_EQ(log, (std::vector<int>{2007, 1007, 1002}));
}

// The queue's own rules (order, bound) are CMsgQ's; the handler passes its answer on.
TEST(COpHandler, QueuesEachOperationAndSaysWhenTheQueueIsFull) {
    KT::CMsgQ<KT::CSharedPtr<SsOp>> queue(1);
    COpHandler handler(&queue);
    EXPECT_TRUE(handler.HandleCommOp(Op(1)));
    EXPECT_FALSE(handler.HandleCommOp(Op(2)));
    KT::CSharedPtr<SsOp> out;
    ASSERT_TRUE(queue.Dequeue(0, out));
    EXPECT_EQ(out->GetOpId(), 1u);
    EXPECT_FALSE(queue.Dequeue(0, out));
}
