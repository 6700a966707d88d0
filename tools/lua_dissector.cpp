// The Lua dissector: generated tables (types, dictionary, value names) and the
// fixed dissecting code after them.
#include "tools/lua_dissector.h"

#include <cstdio>
#include <map>
#include <sstream>

#include "protocol/op_value_names.h"
#include "output/video_format_base.h"
#include "protocol/ss_op.h"

namespace avhost {

namespace {

// A Lua string literal; bytes outside printable ASCII as decimal escapes.
std::string LuaString(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20 || c > 0x7E) {
            out += "\\" + std::to_string(c);
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

// The dissecting code: reads the tables above it. A record is the direction
// byte and the line bytes of (normally) one frame; the bytes are walked as the
// daemon's receiver walks them.
const char* const kCode = R"LUA(
local stbav = Proto("stbav", "stbav serial line")

local DIRS = { [0] = "host to daemon", [1] = "daemon to host" }
local DIR_MARKS = { [0] = ">", [1] = "<" }
local OP_TYPES = { [0] = "data", [1] = "type 1 (no handler)", [2] = "type 2 (no handler)",
                   [3] = "type 3 (no handler)", [4] = "type 4 (no handler)", [5] = "type 5 (no handler)",
                   [6] = "apply configuration", [7] = "type 7 (no handler)" }
local OP_NAMES = {}
for id, op in pairs(OPS) do OP_NAMES[id] = op.name end

local pf = {
  dir = ProtoField.uint8("stbav.dir", "Direction", base.DEC, DIRS),
  start = ProtoField.uint8("stbav.start", "Start marker", base.HEX),
  stop = ProtoField.uint8("stbav.end", "End marker", base.HEX),
  escape = ProtoField.uint8("stbav.escape", "Escape", base.HEX),
  stray = ProtoField.bytes("stbav.stray", "Bytes outside a frame"),
  frame = ProtoField.bytes("stbav.frame", "Frame"),
  image = ProtoField.bytes("stbav.image", "Op image (unstuffed)"),
  optype = ProtoField.uint8("stbav.optype", "Op type", base.DEC, OP_TYPES),
  opid = ProtoField.uint16("stbav.opid", "opId", base.DEC_HEX, OP_NAMES),
  op = ProtoField.string("stbav.op", "Operation"),
  index_len = ProtoField.uint8("stbav.index_len", "Index length"),
  index = ProtoField.uint32("stbav.index", "Index"),
  value_len = ProtoField.uint8("stbav.value_len", "Value length"),
  type = ProtoField.string("stbav.type", "Value type"),
  int8 = ProtoField.int8("stbav.value.int8", "Value"),
  uint8 = ProtoField.uint8("stbav.value.uint8", "Value"),
  int16 = ProtoField.int16("stbav.value.int16", "Value"),
  uint16 = ProtoField.uint16("stbav.value.uint16", "Value"),
  int32 = ProtoField.int32("stbav.value.int32", "Value"),
  uint32 = ProtoField.uint32("stbav.value.uint32", "Value", base.DEC_HEX),
  int64 = ProtoField.int64("stbav.value.int64", "Value"),
  uint64 = ProtoField.uint64("stbav.value.uint64", "Value"),
  bool = ProtoField.bool("stbav.value.bool", "Value"),
  ip = ProtoField.ipv4("stbav.value.ip", "Value"),
  mac = ProtoField.bytes("stbav.value.mac", "Value"),
  string = ProtoField.string("stbav.value.string", "Value"),
  text = ProtoField.string("stbav.value.text", "Value (text under a numeric type)"),
  bytes = ProtoField.bytes("stbav.value.bytes", "Value (bytes)"),
  meaning = ProtoField.string("stbav.meaning", "Meaning"),
  format = ProtoField.string("stbav.format", "Video format"),
  chunk = ProtoField.uint32("stbav.chunk", "Chunk of a value longer than 240 bytes"),
  rest = ProtoField.bytes("stbav.ignored", "Bytes after the image (ignored by the receiver)"),
}
local fields = {}
for _, f in pairs(pf) do fields[#fields + 1] = f end
stbav.fields = fields

local ex = {
  unknown = ProtoExpert.new("stbav.unknown_opid", "opId not in the dictionary",
                            expert.group.UNDECODED, expert.severity.WARN),
  size = ProtoExpert.new("stbav.wrong_size", "Value length does not fit the dictionary's value type",
                         expert.group.MALFORMED, expert.severity.WARN),
  index = ProtoExpert.new("stbav.wrong_index", "Index length does not fit the dictionary's index type",
                          expert.group.MALFORMED, expert.severity.WARN),
  unescaped = ProtoExpert.new("stbav.unescaped", "Unescaped special byte",
                              expert.group.PROTOCOL, expert.severity.WARN),
  stray_end = ProtoExpert.new("stbav.stray_end",
                              "End marker outside a frame: the receiver completes an empty frame at the next start marker",
                              expert.group.PROTOCOL, expert.severity.WARN),
  stray = ProtoExpert.new("stbav.stray_bytes", "Bytes outside a frame: dropped by the receiver",
                          expert.group.PROTOCOL, expert.severity.WARN),
  bad = ProtoExpert.new("stbav.bad_image", "Not an op image: the receiver drops the frame (Deserialize Failed)",
                        expert.group.MALFORMED, expert.severity.ERROR),
  incomplete = ProtoExpert.new("stbav.incomplete", "Frame without end marker",
                               expert.group.MALFORMED, expert.severity.WARN),
  optype = ProtoExpert.new("stbav.unhandled_optype", "Op type the daemon does not handle",
                           expert.group.PROTOCOL, expert.severity.WARN),
  chunked = ProtoExpert.new("stbav.chunked", "Chunk of a value longer than 240 bytes",
                            expert.group.SEQUENCE, expert.severity.NOTE),
}
stbav.experts = { ex.unknown, ex.size, ex.index, ex.unescaped, ex.stray_end, ex.stray, ex.bad, ex.incomplete,
                  ex.optype, ex.chunked }

-- Chunk numbers, found on the first pass in capture order: per direction the
-- last frame's key and whether it was a full chunk.
local chunk_of = {}
local last_frame = {}
function stbav.init()
  chunk_of = {}
  last_frame = {}
end

local function printable(range)
  local s = range:raw()
  return s:match("^[\32-\126]*$") ~= nil
end

local function flip(b)  -- b XOR 0x20
  if b % 64 >= 32 then return b - 32 end
  return b + 32
end

-- The value typed by the dictionary; returns its text for the info column.
local function add_value(tree, range, op)
  local len = range:len()
  local vt = VALUE_TYPES[op.type]
  tree:add(pf.type, vt.name):set_generated()
  if vt.size == 0 then
    if op.type == 9 then tree:add(pf.mac, range); return tostring(range:bytes()) end
    tree:add(pf.string, range)
    return '"' .. range:string() .. '"'
  end
  if len ~= vt.size then
    local item
    if len > 0 and printable(range) then
      item = tree:add(pf.text, range)
      item:add_proto_expert_info(ex.size, string.format("%d bytes under %s (%d bytes)", len, vt.name, vt.size))
      return '"' .. range:string() .. '"'
    end
    if len > 0 then item = tree:add(pf.bytes, range) else item = tree end
    item:add_proto_expert_info(ex.size, string.format("%d bytes under %s (%d bytes)", len, vt.name, vt.size))
    return len > 0 and ("[" .. tostring(range:bytes()) .. "]") or "(empty)"
  end
  local item, number
  if vt.field == "ip" then item = tree:add(pf.ip, range); return tostring(range:ipv4()) end
  if vt.field == "int64" or vt.field == "uint64" then
    item = tree:add(pf[vt.field], range)
    return tostring(vt.field == "int64" and range:int64() or range:uint64())
  end
  item = tree:add(pf[vt.field], range)
  if vt.field == "bool" then return range:uint() ~= 0 and "true" or "false" end
  if vt.signed then number = range:int() else number = range:uint() end
  local text = tostring(number)
  if op.format then
    -- The code's bytes in reverse order: resolution, scan, rate, aspect.
    local b = 0
    for k = 0, 3 do b = b * 256 + range(3 - k, 1):uint() end
    local format = (FORMAT.resolution[math.floor(b / 1024)] or "(n/a)") ..
                   (FORMAT.scan[math.floor(b / 256) % 4] or "(n/a)") .. " " ..
                   (FORMAT.aspect[b % 16] or "(n/a)") .. " " .. (FORMAT.rate[math.floor(b / 16) % 16] or "(n/a)") .. "fps"
    tree:add(pf.format, format):set_generated()
    return string.format("0x%08X (%s)", number, format)
  end
  if op.names and op.names[number] then
    tree:add(pf.meaning, op.names[number]):set_generated()
    text = text .. " (" .. op.names[number] .. ")"
  end
  return text
end

-- One frame's unstuffed payload, parsed as the daemon does (with its padding
-- zero byte after the image). Returns the info text.
local function dissect_image(bytes, ftree, pinfo, dir, serial, frame_item)
  local ba = ByteArray.new()
  ba:set_size(#bytes + 1)
  for k, b in ipairs(bytes) do ba:set_index(k - 1, b) end
  ba:set_index(#bytes, 0)
  local itvb = ba:tvb("Op image (unstuffed)")
  local len = #bytes + 1
  local tree = ftree
  if #bytes > 0 then tree = ftree:add(pf.image, itvb(0, #bytes)) end
  local function bad(why)
    frame_item:add_proto_expert_info(ex.bad, "Not an op image: " .. why)
    return "decode failed (" .. why .. ")"
  end
  if len < 2 then return bad("empty frame") end
  local optype = itvb(0, 1):uint()
  tree:add(pf.optype, itvb(0, 1))
  local opid = itvb(1, 2):le_uint()
  local opid_item = tree:add_le(pf.opid, itvb(1, 2))
  if 4 > len then return bad("no index length") end
  local n = itvb(3, 1):uint()
  if 4 + n > len then return bad(string.format("index length %d past the end", n)) end
  local data_at = 4 + n
  if data_at + 1 > len then return bad("no value length") end
  local m = itvb(data_at, 1):uint()
  if data_at + 1 + m > len then return bad(string.format("value length %d past the end", m)) end
  local op = OPS[opid]
  local name
  if optype == 6 then
    name = "apply"
  elseif op then
    name = op.name
  else
    name = string.format("#%d", opid)
  end
  tree:add(pf.op, name):set_generated()
  local ti = tree:add(pf.index_len, itvb(3, 1))
  local index_text = ""
  if n > 0 then index_text = "[" .. (n <= 4 and tostring(itvb(4, n):uint()) or tostring(itvb(4, n):bytes())) .. "]" end
  if optype ~= 6 and op then
    local want = 0
    for _, t in ipairs(op.index) do want = want + (INDEX_SIZES[t] or 0) end
    if want == n then
      local at = 4
      for _, t in ipairs(op.index) do
        local size = INDEX_SIZES[t] or 0
        if size > 0 then tree:add(pf.index, itvb(at, size)) end
        at = at + size
      end
    else
      ti:add_proto_expert_info(ex.index, string.format("%d index bytes, the dictionary's index takes %d", n, want))
    end
  elseif n > 0 and n <= 4 then
    tree:add(pf.index, itvb(4, n))
  end
  tree:add(pf.value_len, itvb(data_at, 1))
  local value = itvb(data_at + 1, m)
  local text
  if optype > 7 then
    text = string.format("(op type %d: ignored by the receiver)", optype)
    opid_item:add_proto_expert_info(ex.optype, string.format("Op type %d is ignored by the receiver", optype))
  elseif optype == 6 then
    text = ""
  elseif optype ~= 0 then
    opid_item:add_proto_expert_info(ex.optype, string.format("Op type %d has no handler in the daemon", optype))
  end
  if optype ~= 6 then
    if op then
      local vtext = add_value(tree, value, op)
      text = (text and (text .. " ") or "") .. "= " .. vtext
    else
      opid_item:add_proto_expert_info(ex.unknown, string.format("opId %d (0x%04X) is not in the dictionary", opid, opid))
      if m > 0 then tree:add(pf.bytes, value) end
      text = (text and (text .. " ") or "") .. "= [" .. (m > 0 and tostring(value:bytes()) or "") .. "]"
    end
  end
  if data_at + 1 + m < #bytes then tree:add(pf.rest, itvb(data_at + 1 + m, #bytes - data_at - 1 - m)) end
  -- Chunks: a full chunk (240 bytes), and every frame with the same operation
  -- and index that follows a full chunk in the same direction.
  local key = string.format("%d/%d/%s", optype, opid, index_text)
  if not pinfo.visited then
    local prev = last_frame[dir]
    local number = 0
    if prev and prev.full and prev.key == key then number = prev.chunk + 1
    elseif m == MAX_CHUNK then number = 1 end
    last_frame[dir] = { key = key, full = (m == MAX_CHUNK), chunk = number }
    chunk_of[serial] = number
  end
  local chunk = chunk_of[serial] or 0
  if chunk > 0 then
    local ci = tree:add(pf.chunk, chunk):set_generated()
    ci:add_proto_expert_info(ex.chunked, string.format("Chunk %d of a value longer than %d bytes (%d bytes here)",
                                                         chunk, MAX_CHUNK, m))
    text = text .. string.format(" (chunk %d)", chunk)
  end
  return name .. index_text .. (text ~= "" and (" " .. text) or "")
end

function stbav.dissector(tvb, pinfo, tree)
  local n = tvb:len()
  if n < 1 then return 0 end
  pinfo.cols.protocol = "STBAV"
  local root = tree:add(stbav, tvb())
  local dir = tvb(0, 1):uint()
  root:add(pf.dir, tvb(0, 1))
  local infos = {}
  local in_frame, ended, escape = false, false, false
  local frame_at, stray_at, payload = nil, nil, {}
  local frames = 0
  local function flush_stray(upto)
    if stray_at then
      local item = root:add(pf.stray, tvb(stray_at, upto - stray_at))
      item:add_proto_expert_info(ex.stray)
      infos[#infos + 1] = "stray bytes"
      stray_at = nil
    end
  end
  for i = 1, n - 1 do
    local b = tvb(i, 1):uint()
    if b == 0x0F then
      flush_stray(i)
      if in_frame and #payload > 0 then
        root:add(pf.start, tvb(i, 1)):add_proto_expert_info(ex.unescaped,
            "Start marker inside a frame: the receiver ignores it")
      end
      in_frame = true
      frame_at = frame_at or i
    elseif b == 0x10 then
      flush_stray(i)
      if not in_frame then
        root:add(pf.stop, tvb(i, 1)):add_proto_expert_info(ex.stray_end)
        infos[#infos + 1] = "stray end marker"
      end
      ended = true
      frame_at = frame_at or i
    elseif b == 0x12 then
      escape = true
    else
      if escape then
        b = flip(b)
        escape = false
      elseif in_frame and (b == 0x11 or b == 0x13) then
        root:add_proto_expert_info(ex.unescaped, string.format("Unescaped 0x%02X inside a frame: taken as data", b))
      end
      if in_frame then payload[#payload + 1] = b
      elseif not ended then stray_at = stray_at or i end
    end
    if in_frame and ended then
      frames = frames + 1
      local range = tvb(frame_at, i - frame_at + 1)
      local ftree = root:add(pf.frame, range)
      for k = frame_at, i do
        local c = tvb(k, 1):uint()
        if c == 0x0F then ftree:add(pf.start, tvb(k, 1))
        elseif c == 0x10 then ftree:add(pf.stop, tvb(k, 1))
        elseif c == 0x12 then ftree:add(pf.escape, tvb(k, 1)) end
      end
      infos[#infos + 1] = dissect_image(payload, ftree, pinfo, dir, pinfo.number * 1000 + frames, ftree)
      in_frame, ended, frame_at, payload = false, false, nil, {}
    end
  end
  flush_stray(n)
  if in_frame or ended then
    local item = root:add(pf.frame, tvb(frame_at, n - frame_at))
    item:add_proto_expert_info(ex.incomplete)
    infos[#infos + 1] = "incomplete frame"
  end
  pinfo.cols.info = (DIR_MARKS[dir] or "?") .. " " .. table.concat(infos, "; ")
  return n
end

-- Records of link type DLT_USER0 (147) come here without any preference set.
DissectorTable.get("wtap_encap"):add(wtap_encaps and wtap_encaps.USER0 or wtap.USER0, stbav)
)LUA";

}  // namespace

std::string LuaDissector(const OpCatalog& catalog) {
    std::ostringstream out;
    out << "-- stbav.lua: Wireshark dissector of the stbav serial line (link type DLT_USER0, 147).\n"
        << "-- Written by `avhost dissector` from the operation dictionary and the value names\n"
        << "-- table; do not edit: rewrite it with `avhost dissector > tools/stbav.lua`.\n"
        << "-- Record: one direction byte (0x00 host to daemon, 0x01 daemon to host), then the\n"
        << "-- frame's bytes as on the line: 0x0F start, stuffed op image, 0x10 end.\n\n";
    out << "local MAX_CHUNK = " << SsOp::kMaxChunk << "\n\n";
    out << "-- Value types: name, bytes on the line (0: any length), field.\n";
    out << "local VALUE_TYPES = {\n";
    const struct {
        DataVarType_e type;
        const char* field;
        bool isSigned;
    } kTypes[] = {{VT_INT32, "int32", true},   {VT_UINT32, "uint32", false}, {VT_INT8, "int8", true},
                  {VT_UINT8, "uint8", false},  {VT_INT16, "int16", true},    {VT_UINT16, "uint16", false},
                  {VT_BOOL, "bool", false},    {VT_MAC, "mac", false},       {VT_IP, "ip", false},
                  {VT_STRING, "string", false}, {VT_INT64, "int64", true},   {VT_UINT64, "uint64", false}};
    for (const auto& t : kTypes) {
        out << "  [" << static_cast<int>(t.type) << "] = { name = " << LuaString(OpCatalog::TypeName(t.type))
            << ", size = " << OpCatalog::ValueSize(t.type) << ", field = \"" << t.field
            << "\", signed = " << (t.isSigned ? "true" : "false") << " },\n";
    }
    out << "}\n\n-- Index field sizes by type.\nlocal INDEX_SIZES = {";
    for (DataVarType_e t : {VT_UINT32, VT_UINT8, VT_UINT16})
        out << " [" << static_cast<int>(t) << "] = " << CIndex::GetIndexSize(t) << ",";
    out << " }\n\n-- Enumerated values.\n";
    std::map<const op_value_names::ValueSet*, std::string> setNames;
    for (const op_value_names::OpValues& o : op_value_names::All()) {
        if (setNames.count(o.set)) continue;
        const std::string name = "NAMES_" + std::to_string(setNames.size() + 1);
        setNames[o.set] = name;
        out << "-- " << o.set->type << "\nlocal " << name << " = {";
        for (const op_value_names::ValueName& v : o.set->values)
            out << " [" << v.value << "] = " << LuaString(v.name) << ",";
        out << " }\n";
    }
    out << "\n-- Video format codes: the names of their fields.\nlocal FORMAT = {\n";
    const std::string na = GetResolutionString(static_cast<VideoFormatBase::Resolution_e>(63));
    auto field = [&](const char* name, unsigned count, std::string (*text)(unsigned)) {
        out << "  " << name << " = {";
        for (unsigned v = 0; v < count; ++v) {
            const std::string t = text(v);
            if (t != na) out << " [" << v << "] = " << LuaString(t) << ",";
        }
        out << " },\n";
    };
    field("resolution", 64, [](unsigned v) {
        return GetResolutionString(static_cast<VideoFormatBase::Resolution_e>(v));
    });
    field("scan", 4, [](unsigned v) { return GetScanTypeString(static_cast<VideoFormatBase::ScanType_e>(v)); });
    field("rate", 16, [](unsigned v) { return GetFrameRateString(static_cast<VideoFormatBase::FrameRate_e>(v)); });
    field("aspect", 16, [](unsigned v) {
        return GetAspectRatioString(static_cast<VideoFormatBase::AspectRatio_e>(v));
    });
    out << "}\n";
    out << "\n-- The dictionary: opId, name, value type, index types, enumerated values.\nlocal OPS = {\n";
    for (const COpSsData* e : catalog.Entries()) {
        char id[16];
        snprintf(id, sizeof id, "0x%04X", e->GetOpId());
        out << "  [" << id << "] = { name = " << LuaString(e->GetName())
            << ", type = " << static_cast<int>(e->GetDataType()) << ", index = {";
        const std::vector<DataVarType_e> index = e->GetIndex().GetIndexTypeList();
        for (std::size_t i = 0; i < index.size(); ++i) out << (i ? ", " : " ") << static_cast<int>(index[i]);
        out << (index.empty() ? "}" : " }");
        const op_value_names::ValueSet* set = op_value_names::ForOp(e->GetName());
        if (set != nullptr) out << ", names = " << setNames[set];
        if (OpCatalog::IsFormatCode(e->GetOpId())) out << ", format = true";
        out << " },\n";
    }
    out << "}\n" << kCode;
    return out.str();
}

}  // namespace avhost
