// COpHandler: queues each operation. Runs on the transport's receiving thread.
#include "transport/c_op_handler.h"

COpHandler::COpHandler(OpQueue* queue) : m_queue(queue) {}

bool COpHandler::HandleCommOp(KT::CSharedPtr<SsOp> op) { return m_queue->Enqueue(op); }
