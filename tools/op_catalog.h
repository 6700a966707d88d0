// OpCatalog: the host tool's view of the operation dictionary: the daemon's
// COpSsDataMap filled from the fifteen tables, plus look-up by name and the
// display names of the value types. Built once, then only read (any thread).
// Entries belong to the static tables; the catalog only points at them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "protocol/c_op_ss_data_map.h"

namespace avhost {

class OpCatalog {
public:
    // Fills the map from every table, as the daemon does.
    OpCatalog();

    // The entry, or null.
    const COpSsData* FindById(unsigned opId) const;
    const COpSsData* FindByName(const std::string& name) const;
    // A name that differs from the given one only in letter case, or "".
    std::string SuggestName(const std::string& name) const;
    // Every entry in opId order.
    std::vector<const COpSsData*> Entries() const;

    // True for the operations whose value is a video format code.
    static bool IsFormatCode(unsigned opId);
    // "VT_UINT16" etc.; "VT_<n>" for a code without a name.
    static std::string TypeName(DataVarType_e type);
    // Bytes of a value of this type; 0 for the types of any length (text, MAC).
    static unsigned ValueSize(DataVarType_e type);

private:
    COpSsDataMap m_map;
    std::map<std::string, const COpSsData*> m_byName;
};

}  // namespace avhost
