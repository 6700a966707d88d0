// COpSsDataMap: filling and look-up. Filled on the constructing thread, read anywhere.
#include "protocol/c_op_ss_data_map.h"

#include "toolkit/kt_print.h"

void COpSsDataMap::FillMap(COpSsData** table) {
    if (table == nullptr) return;
    for (COpSsData** entry = table; *entry != nullptr; ++entry) {
        COpSsData* e = *entry;
        m_map[e->GetOpId()] = e;
        KT::EmptyPrint("Mapping %s OpId:%d OpIdHex:0x%04X DataType:%d", e->GetName().c_str(), e->GetOpId(),
                       e->GetOpId(), static_cast<int>(e->GetDataType()));
    }
}

COpSsData* COpSsDataMap::GetByOpId(unsigned int opId) const {
    auto it = m_map.find(opId);
    return it == m_map.end() ? nullptr : it->second;
}

COpSsDataMap::Map COpSsDataMap::Get() const { return m_map; }
