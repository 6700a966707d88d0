// CommBus: the operation bus a transport derives from. Consumers register an
// iCommOpHandler; every received operation is offered to each of them in
// registration order. Handlers are not owned. The list has no lock: register and
// unregister only while nothing is dispatched (before reception starts, after it
// stops). SendOpToHandlers runs on the transport's receiving thread.
#pragma once

#include <vector>

#include "protocol/ss_op.h"
#include "toolkit/kt_shared_ptr.h"
#include "transport/i_comm_op_handler.h"

class CommBus {
public:
    using HandlerList = std::vector<iCommOpHandler*>;

    virtual ~CommBus();
    // The transport's send: puts one operation on the line. True on success; any thread.
    virtual bool SendOperation(SsOp& op) = 0;
    // Appends the handler; false if it is already registered.
    virtual bool RegisterOpHandler(iCommOpHandler* handler);
    // Removes the handler; false if it was not registered.
    virtual bool UnregisterOpHandler(iCommOpHandler* handler);
    // Offers the operation to every handler in registration order, each with its
    // own copy of the pointer. Always true.
    virtual bool SendOpToHandlers(KT::CSharedPtr<SsOp> op);

    // The handler's position in the list (pointer comparison), or end().
    HandlerList::iterator FindOpHandler(iCommOpHandler* handler);

private:
    HandlerList m_handlers;
};
