// CommBus: handler registration and dispatch. Dispatch runs on the transport's
// receiving thread; registration on the controlling thread while idle.
#include "transport/comm_bus.h"

#include <algorithm>

CommBus::~CommBus() = default;

CommBus::HandlerList::iterator CommBus::FindOpHandler(iCommOpHandler* handler) {
    return std::find(m_handlers.begin(), m_handlers.end(), handler);
}

bool CommBus::RegisterOpHandler(iCommOpHandler* handler) {
    if (FindOpHandler(handler) != m_handlers.end()) return false;
    m_handlers.push_back(handler);
    return true;
}

bool CommBus::UnregisterOpHandler(iCommOpHandler* handler) {
    auto it = FindOpHandler(handler);
    if (it == m_handlers.end()) return false;
    m_handlers.erase(it);
    return true;
}

bool CommBus::SendOpToHandlers(KT::CSharedPtr<SsOp> op) {
    for (iCommOpHandler* handler : m_handlers) handler->HandleCommOp(op);
    return true;
}
