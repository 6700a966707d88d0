// The dictionary entry of one operation: its name, its opId, the type of its
// value and the shape of its index. Entries are built once by the tables in
// op_ss_data_tables.cpp, never freed, and only read afterwards (any thread).
#pragma once

#include <string>

#include "protocol/c_index.h"
#include "protocol/op_types.h"

// Common base of dictionary entries: the name, which is also the log vocabulary.
class CCommonSsData {
public:
    explicit CCommonSsData(std::string name);
    virtual ~CCommonSsData() = default;
    const std::string& GetName() const { return m_name; }

private:
    std::string m_name;
};

class COpSsData : public CCommonSsData {
public:
    COpSsData(std::string name, unsigned int opId, CIndex index, DataVarType_e dataType);

    unsigned int GetOpId() const { return m_opId; }
    // The value type: read the value with the typed getter of this type.
    DataVarType_e GetDataType() const { return m_dataType; }
    // The index descriptor (types only; no values).
    const CIndex& GetIndex() const { return m_index; }

private:
    unsigned int m_opId;
    DataVarType_e m_dataType;
    CIndex m_index;
};
