// StbAvOpSender: turns one status value (opId, output index, value) into a
// type-0 operation and sends it to the host through the UART adapter. Called on
// the poller thread; keeps no state between calls and takes no lock (the adapter
// serialises frames). Owns nothing: adapter and dictionary belong to the subsystem.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "protocol/c_op_ss_data_map.h"
#include "protocol/ss_op.h"
#include "toolkit/log.h"
#include "transport/uart_adapter.h"

class StbAvOpSender {
public:
    StbAvOpSender(CUartAdapter& adapter, COpSsDataMap& dictionary);

    // Sends value under the dictionary's value type for opId, with the index
    // reduced to one byte. Works for any integral or enumeration type. A type that
    // cannot carry a number (text, ...) or an opId missing from the dictionary is
    // logged and nothing is sent; a failed send is logged.
    template <typename T>
    void TransmitStatus(unsigned int opId, unsigned int index, T value);
    // Sends text as VT_STRING, whatever the dictionary says.
    void TransmitStatus(unsigned int opId, unsigned int index, std::string value);

private:
    void SendTyped(SsOp& op, unsigned int opId, unsigned int index);
    // The dictionary's value type; false (logged) when the opId is unknown.
    bool LookUpType(unsigned int opId, DataVarType_e& type);

    log4cpp::Category& m_log;
    CUartAdapter& m_adapter;
    COpSsDataMap& m_dictionary;
};

template <typename T>
void StbAvOpSender::TransmitStatus(unsigned int opId, unsigned int index, T value) {
    static_assert(std::is_integral<T>::value || std::is_enum<T>::value, "TransmitStatus<T> takes a number");
    SsOp op(OP_TYPE_DATA, opId);
    DataVarType_e type = VT_STRING;
    if (!LookUpType(opId, type)) return;
    if (!op.SetSsOpData(value, type)) {
        stbav::LogError(m_log, "%s::SetSsOpData failed, opId: %d, dataType: %d", "TransmitStatus", opId,
                         static_cast<int>(type));
        return;
    }
    SendTyped(op, opId, index);
}
