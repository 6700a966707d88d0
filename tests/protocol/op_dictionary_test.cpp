// The operation dictionary: table contents and the opId map.
#include "protocol/c_op_ss_data_map.h"
#include "protocol/op_ss_data_tables.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

struct Table {
    const char* name;
    COpSsData** entries;
    unsigned expectedCount;
};

const Table kTables[] = {
    {"analogAudioSsData", analogAudioSsData, 3},       {"audioPidLockSsData", audioPidLockSsData, 5},
    {"audioSrvSsData", audioSrvSsData, 12},            {"avSsConfigSsData", avSsConfigSsData, 9},
    {"compositeSsData", compositeSsData, 5},           {"stbAvSubsystemSsData", stbAvSubsystemSsData, 10},
    {"overlaySsData", overlaySsData, 11},              {"pidLockSsData", pidLockSsData, 7},
    {"selectedAudioSsData", selectedAudioSsData, 4},   {"selectedOtherSsData", selectedOtherSsData, 1},
    {"selectedServiceSsData", selectedServiceSsData, 11}, {"serviceLockSsData", serviceLockSsData, 6},
    {"serviceSelectionSsData", serviceSelectionSsData, 13}, {"videoOutputSsData", videoOutputSsData, 12},
    {"videoSsData", videoSsData, 13},
};

}  // namespace

// Unique opIds across the tables; every entry has a one-byte index but the
// software version, whose index takes four.
TEST(OpDictionary, TablesHoldTheirEntries) {
    unsigned total = 0;
    std::set<unsigned> ids;
    for (const Table& t : kTables) {
        unsigned count = 0;
        for (COpSsData** e = t.entries; *e; ++e, ++count) {
            ids.insert((*e)->GetOpId());
            std::vector<DataVarType_e> types = (*e)->GetIndex().GetIndexTypeList();
            ASSERT_EQ(types.size(), 1u) << (*e)->GetName();
            EXPECT_EQ(types[0], (*e)->GetOpId() == 2 ? VT_UINT32 : VT_UINT8) << (*e)->GetName();
        }
        EXPECT_EQ(count, t.expectedCount) << t.name;
        total += count;
    }
    EXPECT_EQ(total, 122u);
    EXPECT_EQ(ids.size(), total) << "opIds must be unique across tables";
}

TEST(OpDictionary, LooksEntriesUpByOpId) {
    COpSsDataMap map;
    FillDictionary(map);
    FillDictionary(map);  // filling again changes nothing
    EXPECT_EQ(map.Get().size(), 122u);

    const struct {
        unsigned opId;
        const char* name;
        DataVarType_e type;
    } cases[] = {
        {271, "videoWidth", VT_UINT16},
        {2, "stbsystemSoftwareVersion", VT_UINT32},
        {0, "stbsystemReset", VT_INT8},
        {62, "videooutputAfdCode", VT_UINT8},
        {112, "avssHeartBeat", VT_UINT32},
        {254, "compositeLine21Cc", VT_UINT8},
        {220, "selectedserviceVideoPid", VT_INT16},
        {245, "serviceselectionPcr", VT_UINT16},
        {226, "selectedserviceServiceName", VT_STRING},
        {104, "avssconfigGenlockAvail", VT_BOOL},
        {283, "videoChromaBitDepth", VT_UINT8},
    };
    for (const auto& c : cases) {
        COpSsData* e = map.GetByOpId(c.opId);
        ASSERT_NE(e, nullptr) << c.opId;
        EXPECT_EQ(e->GetName(), c.name);
        EXPECT_EQ(e->GetDataType(), c.type) << c.name;
    }
    for (unsigned unknown : {400u, 10u}) EXPECT_EQ(map.GetByOpId(unknown), nullptr) << unknown;
}
