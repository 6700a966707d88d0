// StbAvOpReceiver: sorts received operations by type.
#include "control/stb_av_op_receiver.h"

#include "toolkit/log.h"

StbAvOpReceiver::StbAvOpReceiver(CUartAdapter& adapter, ConfigManager& configManager)
    : m_Log(stbav::Logger("stbav.opreceiver")), m_Adapter(adapter), m_ConfigManager(configManager) {}

StbAvOpReceiver::~StbAvOpReceiver() = default;

void StbAvOpReceiver::StartHandlingOperations() {
    // Registered first, so that nothing received after the start is lost.
    m_Adapter.RegisterOpHandler(this);
    m_Adapter.StartReceiveOps();
}

void StbAvOpReceiver::StopHandlingOperations() {
    m_Adapter.TerminateReceiveOps();
    m_Adapter.UnregisterOpHandler(this);
}

bool StbAvOpReceiver::HandleCommOp(KT::CSharedPtr<SsOp> op) {
    const int type = static_cast<int>(op->GetOpType());
    if (type == OP_TYPE_DATA) return m_ConfigManager.QueueOperation(op);
    if (type == OP_TYPE_APPLY_CONFIG) {
        m_ConfigManager.ScheduleConfiguration();
        return true;
    }
    if (type >= OP_TYPE_RESERVED_1 && type <= OP_TYPE_RESERVED_7)
        stbav::LogWarn(m_Log, "%s: Unhandled OpType=%d", "HandleCommOp", type);
    return false;
}
