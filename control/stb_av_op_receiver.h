// StbAvOpReceiver: the daemon's one handler of host operations. On "UART Px" it
// queues configuration values (type 0) in the ConfigManager and turns each apply
// trigger (type 6) into a scheduled configuration run. Holds the adapter and the
// config manager by reference (both owned by the subsystem).
#pragma once

#include "control/config_manager.h"
#include "transport/i_comm_op_handler.h"
#include "transport/uart_adapter.h"

class StbAvOpReceiver : public iCommOpHandler {
public:
    StbAvOpReceiver(CUartAdapter& adapter, ConfigManager& configManager);
    ~StbAvOpReceiver() override;

    // Registers on the adapter's bus, then starts reception. Controlling thread.
    void StartHandlingOperations();
    // Stops reception, then unregisters. Controlling thread.
    void StopHandlingOperations();

    // Type 0 is queued (true when the queue took it); type 6 schedules a run
    // (true); types 1 to 5 and 7 are logged and dropped, higher types are
    // dropped silently (false). "UART Px" thread.
    bool HandleCommOp(KT::CSharedPtr<SsOp> op) override;

private:
    log4cpp::Category& m_Log;
    CUartAdapter& m_Adapter;
    ConfigManager& m_ConfigManager;
};
