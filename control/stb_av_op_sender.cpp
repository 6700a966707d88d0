// StbAvOpSender: the non-template parts of status transmission. Poller thread.
#include "control/stb_av_op_sender.h"

#include <utility>

StbAvOpSender::StbAvOpSender(CUartAdapter& adapter, COpSsDataMap& dictionary)
    : m_log(stbav::Logger("stbav.opsender")), m_adapter(adapter), m_dictionary(dictionary) {}

bool StbAvOpSender::LookUpType(unsigned int opId, DataVarType_e& type) {
    const COpSsData* entry = m_dictionary.GetByOpId(opId);
    if (entry == nullptr) {
        // Status opIds are always in the dictionary; this is a programming error.
        stbav::LogError(m_log, "%s: OpId %u is not in the dictionary", "TransmitStatus", opId);
        return false;
    }
    type = entry->GetDataType();
    return true;
}

void StbAvOpSender::SendTyped(SsOp& op, unsigned int opId, unsigned int index) {
    op.SetIndexList(std::vector<unsigned char>{static_cast<unsigned char>(index)});
    if (!m_adapter.SendOperation(op))
        stbav::LogError(m_log, "%s::SendOperation failed, opId: %d.", "TransmitStatus", opId);
}

void StbAvOpSender::TransmitStatus(unsigned int opId, unsigned int index, std::string value) {
    SsOp op(OP_TYPE_DATA, opId);
    if (op.SetSsOpData(value, VT_STRING)) {
        op.SetIndexList(std::vector<unsigned char>{static_cast<unsigned char>(index)});
        stbav::LogDebug(m_log, "%s::Sending OpId:%d index: %d", "TransmitStatus", opId, index);
    } else {
        // The number printed is the index; the line has always read so.
        stbav::LogError(m_log, "%s::Failed to set data opId: %d", "TransmitStatus", index);
    }
    stbav::LogDebug(m_log, "%s::Pushing op: %d into UartAdapter...", "TransmitStatus", opId);
    if (!m_adapter.SendOperation(op)) stbav::LogError(m_log, "%s::Adapter failed to send operation!", "TransmitStatus");
}
