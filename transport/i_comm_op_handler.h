// iCommOpHandler: what a consumer of received operations implements to be
// registered on a CommBus. HandleCommOp runs on the transport's receiving thread
// ("UART Px" for the serial adapter) and must return quickly: queue real work.
#pragma once

#include "protocol/ss_op.h"
#include "toolkit/kt_shared_ptr.h"
#include "toolkit/kt_uncopyable.h"

class iCommOpHandler : private KT::CUncopyable {
public:
    virtual ~iCommOpHandler() = default;
    // Offered every received operation; the operation is shared with the other
    // handlers, so it is only read. The result is for the handler's own use; the
    // bus ignores it.
    virtual bool HandleCommOp(KT::CSharedPtr<SsOp> op) = 0;
};
