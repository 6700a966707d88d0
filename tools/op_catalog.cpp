// The operation dictionary as the host tool uses it. Built on the calling thread.
#include "tools/op_catalog.h"

#include <strings.h>

#include "protocol/op_ss_data_tables.h"

namespace avhost {

OpCatalog::OpCatalog() {
    FillDictionary(m_map);
    for (const auto& kv : m_map.Get()) m_byName[kv.second->GetName()] = kv.second;
}

const COpSsData* OpCatalog::FindById(unsigned opId) const { return m_map.GetByOpId(opId); }

const COpSsData* OpCatalog::FindByName(const std::string& name) const {
    auto it = m_byName.find(name);
    return it == m_byName.end() ? nullptr : it->second;
}

std::string OpCatalog::SuggestName(const std::string& name) const {
    for (const auto& kv : m_byName) {
        if (strcasecmp(kv.first.c_str(), name.c_str()) == 0) return kv.first;
    }
    return "";
}

std::vector<const COpSsData*> OpCatalog::Entries() const {
    std::vector<const COpSsData*> out;
    for (const auto& kv : m_map.Get()) out.push_back(kv.second);
    return out;
}

bool OpCatalog::IsFormatCode(unsigned opId) {
    // videooutputManualFormat, videooutputCurrentOutputFormat, videooutputManualFormatCvbs
    return opId == 266 || opId == 267 || opId == 268;
}

std::string OpCatalog::TypeName(DataVarType_e type) {
    switch (type) {
        case VT_INT32: return "VT_INT32";
        case VT_UINT32: return "VT_UINT32";
        case VT_INT8: return "VT_INT8";
        case VT_UINT8: return "VT_UINT8";
        case VT_INT16: return "VT_INT16";
        case VT_UINT16: return "VT_UINT16";
        case VT_BOOL: return "VT_BOOL";
        case VT_MAC: return "VT_MAC";
        case VT_IP: return "VT_IP";
        case VT_STRING: return "VT_STRING";
        case VT_INT64: return "VT_INT64";
        case VT_UINT64: return "VT_UINT64";
    }
    return "VT_" + std::to_string(static_cast<int>(type));
}

unsigned OpCatalog::ValueSize(DataVarType_e type) {
    switch (type) {
        case VT_INT8:
        case VT_UINT8:
        case VT_BOOL: return 1;
        case VT_INT16:
        case VT_UINT16: return 2;
        case VT_INT32:
        case VT_UINT32:
        case VT_IP: return 4;
        case VT_INT64:
        case VT_UINT64: return 8;
        default: return 0;
    }
}

}  // namespace avhost
