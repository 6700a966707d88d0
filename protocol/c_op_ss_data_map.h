// COpSsDataMap: the operation dictionary, opId -> entry. Filled once at start-up
// by the composition root, then only read (no lock). Entries are not owned: they
// belong to the static tables and live for the whole run.
#pragma once

#include <map>

#include "protocol/c_op_ss_data.h"

class COpSsDataMap {
public:
    using Map = std::map<unsigned int, COpSsData*>;

    COpSsDataMap() = default;

    // Adds every entry of a null-terminated table; a later entry with the same
    // opId replaces an earlier one, so loading a table twice changes nothing.
    void FillMap(COpSsData** table);
    // The entry, or null for an unknown opId.
    COpSsData* GetByOpId(unsigned int opId) const;
    Map Get() const;

private:
    Map m_map;
};
