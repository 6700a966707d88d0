// HisiAvOpReceiver: sorts received operations by type.
#include "control/hisi_av_op_receiver.h"

#include "toolkit/log.h"

HisiAvOpReceiver::HisiAvOpReceiver(CUartAdapter& adapter, ConfigManager& configManager)
    : m_Log(hisiav::Logger("hisiav.opreceiver")), m_Adapter(adapter), m_ConfigManager(configManager) {}

HisiAvOpReceiver::~HisiAvOpReceiver() = default;

void HisiAvOpReceiver::StartHandlingOperations() {
    // Registered first, so that nothing received after the start is lost.
    m_Adapter.RegisterOpHandler(this);
    m_Adapter.StartReceiveOps();
}

void HisiAvOpReceiver::StopHandlingOperations() {
    m_Adapter.TerminateReceiveOps();
    m_Adapter.UnregisterOpHandler(this);
}

bool HisiAvOpReceiver::HandleCommOp(KT::CSharedPtr<SsOp> op) {
    const int type = static_cast<int>(op->GetOpType());
    if (type == OP_TYPE_DATA) return m_ConfigManager.QueueOperation(op);
    if (type == OP_TYPE_APPLY_CONFIG) {
        m_ConfigManager.ScheduleConfiguration();
        return true;
    }
    if (type >= OP_TYPE_RESERVED_1 && type <= OP_TYPE_RESERVED_7)
        hisiav::LogWarn(m_Log, "%s: Unhandled OpType=%d", "HandleCommOp", type);
    return false;
}
