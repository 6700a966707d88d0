// Dictionary entry constructors. Called by the static initialisation of the tables.
#include "protocol/c_op_ss_data.h"

#include <utility>

CCommonSsData::CCommonSsData(std::string name) : m_name(std::move(name)) {}

COpSsData::COpSsData(std::string name, unsigned int opId, CIndex index, DataVarType_e dataType)
    : CCommonSsData(std::move(name)), m_opId(opId), m_dataType(dataType), m_index(std::move(index)) {}
