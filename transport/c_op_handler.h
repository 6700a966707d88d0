// COpHandler: a ready-made handler that only queues each received operation, so
// a consumer can take the operations on a thread of its own. The queue is not
// owned and must outlive the handler; any thread may dequeue.
#pragma once

#include "toolkit/kt_msgq.h"
#include "transport/i_comm_op_handler.h"

class COpHandler : public iCommOpHandler {
public:
    using OpQueue = KT::CMsgQ<KT::CSharedPtr<SsOp>>;

    explicit COpHandler(OpQueue* queue);
    // Enqueues the operation; false when the queue is full (the operation is dropped).
    bool HandleCommOp(KT::CSharedPtr<SsOp> op) override;

private:
    OpQueue* m_queue;
};
