
-- What follows reads the tables above: operations, named_values and offsets.

operations[#operations + 1] = {
  text = "Make permanent", name = "SV", format = "", header = "",
  forms = {{command = {}, reply = {}}},
}

local PREFIX = "\x2B\x06\x01\x04\x01\x95\x1E\x01\x02\x02\x28\x01\x01\x02"
local PAYLOAD_HEAD = 4  -- length, mark and two bytes of length, in front of the command
local PAYLOAD_MARK = 8
local COMMAND_HEAD = 4  -- name and length
local RECORD_HEAD = 3  -- device code, record number, layout
local STAYS = 0xFF

local protocol = Proto("printer_command", "Printer Command")

local field = {
  name = ProtoField.string("printer_command.name", "Name"),
  length = ProtoField.uint16("printer_command.length", "Length"),
  format = ProtoField.bytes("printer_command.format", "Format"),
  operation = ProtoField.string("printer_command.operation", "Operation"),
  families = ProtoField.string("printer_command.families", "Families"),
  unknown = ProtoField.bytes("printer_command.unknown", "Not understood"),
  reply = ProtoField.string("printer_command.reply", "Reply"),
  refused = ProtoField.bool("printer_command.refused", "Refused"),
}
-- A field for each parameter, under its own name, with its value as the worker gives it to hosts.
local parameter_field = {}
for _, operation in ipairs(operations) do
  for _, form in ipairs(operation.forms) do
    for _, list in ipairs({form.command, form.reply}) do
      for _, entry in ipairs(list) do
        parameter_field[entry.name] = parameter_field[entry.name] or
          ProtoField.string("printer_command." .. entry.name:lower(), entry.name)
      end
    end
  end
end
local all_fields = {}
for _, each in pairs(field) do all_fields[#all_fields + 1] = each end
for _, each in pairs(parameter_field) do all_fields[#all_fields + 1] = each end
protocol.fields = all_fields

local damaged = ProtoExpert.new("printer_command.damaged", "Damaged command or reply",
  expert.group.MALFORMED, expert.severity.WARN)
protocol.experts = {damaged}

-- The families whose records cannot be told from others by device code and layout.
local AUTOMATIC = 0
local family_choices = {{1, "Tell by the bytes", AUTOMATIC}}

local function add_family_choice(families)
  for _, row in ipairs(family_choices) do
    if row[2] == families then return end
  end
  family_choices[#family_choices + 1] = {#family_choices + 1, families, #family_choices}
end

for _, operation in ipairs(operations) do
  local first = {}  -- the families of the first form for a device code and a layout
  for _, form in ipairs(operation.forms) do
    local key = form.version and form.code .. ":" .. form.version
    if key and first[key] then
      add_family_choice(first[key])
      add_family_choice(form.families)
    elseif key then
      first[key] = form.families
    end
  end
end

protocol.prefs.family = Pref.enum("Family, where a command does not tell", AUTOMATIC,
  "Some families have one device code and layout number, but records of their own",
  family_choices, false)
protocol.prefs.ports = Pref.range("SNMP ports", "", "UDP ports of SNMP agents besides 161", 65535)

local identifier_field = Field.new("snmp.name")
local octets_field = Field.new("snmp.value.octets")
local status_field = Field.new("snmp.error_status")

-- Texts

local function is_utf8(text)
  local rest = 0
  for i = 1, #text do
    local byte = text:byte(i)
    if rest > 0 then
      if byte < 0x80 or byte > 0xBF then return false end
      rest = rest - 1
    elseif byte >= 0xC2 and byte <= 0xF4 then
      rest = byte >= 0xF0 and 3 or byte >= 0xE0 and 2 or 1
    elseif byte >= 0x80 then
      return false
    end
  end
  return rest == 0
end

local function shown_text(text)
  local pattern = is_utf8(text) and "[\0-\31\127]" or "[\0-\31\127-\255]"
  return (text:gsub(pattern, function(byte) return string.format("\\x%02X", byte:byte()) end))
end

local function shown_number(name, number)
  for _, row in ipairs(named_values) do
    if row.parameter == name and row.byte == number then return row.text end
  end
  return tostring(number + (offsets[name] or 0))
end

local function to_hex(bytes)
  return (bytes:gsub(".", function(byte) return string.format("%02X", byte:byte()) end))
end

-- The bytes that hexadecimal digits stand for; nothing if there is anything else.
local function from_hex(digits)
  if #digits % 2 ~= 0 or digits:find("%X") then return nil end
  return (digits:gsub("%x%x", function(pair) return string.char(tonumber(pair, 16)) end))
end

-- A value from its bytes. Numbers in commands have the least significant byte first.
local function shown(entry, bytes, is_reply)
  if entry.type == "text" then return shown_text(is_reply and bytes:gsub(" +$", "") or bytes) end
  if entry.type == "block" then return to_hex(bytes) end
  local number = tonumber(to_hex(is_reply and bytes or bytes:reverse()), 16)
  return shown_number(entry.name, number)
end

-- Bytes with the places in the packet that they come from

-- A piece of a packet, each byte of which stands in one or two bytes of it.
local Piece = {}
Piece.__index = Piece

function Piece.new(range, bytes, places)
  return setmetatable({range = range, bytes = bytes, places = places}, Piece)
end

-- Bytes [from, from + size), counted from 0, as far as they are there.
function Piece:sub(from, size)
  return self.bytes:sub(from + 1, from + size)
end

-- Where they stand in the packet. Only for bytes that are there.
function Piece:span(from, size)
  local first = self.places and self.places[from + 1] or from
  local last = self.places and self.places[from + size + 1] or from + size
  return self.range(first, last - first)
end

-- The sub-identifiers behind the prefix; nothing for other identifiers. The second result is true
-- when there are some that stand for no byte.
local function payload_of(range)
  local identifier = range:bytes():raw()
  if identifier:sub(1, #PREFIX) ~= PREFIX then return nil end
  local bytes, places = {}, {#PREFIX}
  local number = 0
  for i = #PREFIX + 1, #identifier do
    local byte = identifier:byte(i)
    number = number * 128 + byte % 128
    if number > 0xFF then return Piece.new(range, table.concat(bytes), places), true end
    if byte < 0x80 then
      bytes[#bytes + 1] = string.char(number)
      places[#places + 1] = i
      number = 0
    end
  end
  return Piece.new(range, table.concat(bytes), places), identifier:byte(-1) >= 0x80
end

-- Forms: which table a command or reply is read with

local function find_operation(name, rest)
  for _, operation in ipairs(operations) do
    if operation.name == name and rest:sub(1, #operation.format) == operation.format then
      return operation
    end
  end
  return nil
end

local function end_of(list)
  local last = 0
  for _, entry in ipairs(list) do last = math.max(last, entry.at + entry.size) end
  return last
end

-- Whether the command can be one of the form: long enough for its settings, with the reserved ones
-- left out. A name cannot pass for these: their bytes are none of UTF-8.
local function is_likely(form, variable)
  for _, entry in ipairs(form.command) do
    if entry.type == "number" and entry.at >= #variable then return false end
    if entry.name:find("^Reserv") and variable:byte(entry.at + 1) ~= STAYS then return false end
  end
  return true
end

-- The forms that the head of the variable part allows, those with the longest records first.
local function candidates(operation, variable)
  local code, version = variable:byte(1), variable:byte(3)
  local forms = {}
  for _, form in ipairs(operation.forms) do
    if not form.version or form.code == code and form.version == version then
      forms[#forms + 1] = form
    end
  end
  table.sort(forms, function(a, b) return end_of(a.command) > end_of(b.command) end)
  return forms
end

local known_families = {}  -- of printers that have shown theirs, by address and port

function protocol.init()
  known_families = {}
end

local function form_of_families(forms, families)
  for _, form in ipairs(forms) do
    if form.families == families then return form end
  end
  return nil
end

-- One form, or nothing if it cannot be told. The reply's fields are nil for a command alone.
local function choose_form(forms, printer, variable, fields)
  if #forms < 2 then return forms[1] end
  local choice = protocol.prefs.family
  for _, row in ipairs(family_choices) do
    if row[3] == choice and choice ~= AUTOMATIC then return form_of_families(forms, row[2]) end
  end
  if fields then
    for _, form in ipairs(forms) do
      if end_of(form.reply) > 0 and end_of(form.reply) == #fields then
        known_families[printer] = form.families
        return form
      end
    end
  end
  local known = form_of_families(forms, known_families[printer])
  if known then return known end
  for _, form in ipairs(forms) do
    if end_of(form.command) > RECORD_HEAD and is_likely(form, variable) then return form end
  end
  return nil
end

-- Trees

local function add_bytes(tree, proto_field, piece, from, size)
  if size > 0 then tree:add(proto_field, piece:span(from, size)) end
end

local function add_families(tree, form, piece, from)
  if form and form.families then
    tree:add(field.families, piece:span(from, 1), form.families):set_generated()
  end
end

-- A parameter with its value, and the byte of the printer's language that it stands for.
local function add_parameter(tree, entry, span, text, bytes)
  local item = tree:add(parameter_field[entry.name], span, text)
  if entry.type == "number" then item:append_text(" (" .. to_hex(bytes) .. ")") end
end

local function add_command_fields(tree, form, piece, from)
  local variable = piece:sub(from, #piece.bytes)
  for _, entry in ipairs(form.command) do
    local bytes = variable:sub(entry.at + 1, entry.at + entry.size)
    if bytes ~= "" then
      local stays = entry.stays and entry.type == "number" and bytes:byte() == STAYS
      add_parameter(tree, entry, piece:span(from + entry.at, #bytes),
        stays and "stays" or shown(entry, bytes, false), bytes)
    end
  end
end

local function add_reply_fields(tree, form, piece, from, size)
  for _, entry in ipairs(form.reply) do
    local text = piece:sub(from + entry.at, math.min(entry.size, size - entry.at))
    if entry.at < size and #text == entry.size then
      local bytes = entry.binary and text or from_hex(text)
      if bytes then
        add_parameter(tree, entry, piece:span(from + entry.at, entry.size),
          shown(entry, bytes, true), bytes)
      else
        tree:add_proto_expert_info(damaged, entry.name .. " is not hexadecimal")
      end
    else
      tree:add_proto_expert_info(damaged, "The reply ends before " .. entry.name)
    end
  end
end

-- What the reply has between its header and the semicolon: where it begins, and how long it is.
local function reply_fields(operation, text)
  local first, last = text:find(operation.header, 1, true)
  if operation.header == "" or not first then return nil end
  local size = #text - last
  if text:sub(-1) == ";" then size = size - 1 end
  return last, size
end

local function is_refusal(operation, text)
  local header = operation and text:sub(1, #operation.header) == operation.header and
    operation.header or ""
  return text:sub(#header + 1) == "NA;" or text:find("^%a%a:%x*NA;$") ~= nil
end

-- The octets of an answer. The form is nil where the families cannot be told.
local function add_reply(tree, piece, operation, form)
  local text = piece.bytes
  local branch = tree:add(field.reply, piece.range, shown_text(text:sub(1, 64)))
  if is_refusal(operation, text) then
    branch:add(field.refused, piece.range, true)
    return "refused"
  end
  local from, size = nil, nil
  if operation then from, size = reply_fields(operation, text) end
  if not from then
    if operation and operation.header ~= "" then
      branch:add_proto_expert_info(damaged, "The reply lacks the header " .. operation.header)
    end
  elseif form then
    add_reply_fields(branch, form, piece, from, size)
  end
  return nil
end

local function add_lengths(tree, payload)
  local head = {payload.bytes:byte(1, PAYLOAD_HEAD)}
  local size = #payload.bytes - PAYLOAD_HEAD
  if head[1] ~= (size + 3) % 256 or head[2] ~= PAYLOAD_MARK or head[3] * 256 + head[4] ~= size then
    tree:add_proto_expert_info(damaged, "The identifier's own length is not that of the command")
  end
  local length = payload.bytes:byte(PAYLOAD_HEAD + 3) + 256 * payload.bytes:byte(PAYLOAD_HEAD + 4)
  tree:add(field.length, payload:span(PAYLOAD_HEAD + 2, 2), length)
  if length ~= size - COMMAND_HEAD then
    tree:add_proto_expert_info(damaged, "The command's length is not that of what follows")
  end
end

-- The command's parts up to its variable part. Returns where that begins, and the operation; no
-- operation where there is none that is known.
local function add_head(tree, payload)
  local at = PAYLOAD_HEAD + COMMAND_HEAD
  local name = payload:sub(PAYLOAD_HEAD, 2)
  tree:add(field.name, payload:span(PAYLOAD_HEAD, 2), shown_text(name))
  add_lengths(tree, payload)
  local operation = find_operation(name, payload:sub(at, #payload.bytes))
  if not operation then
    add_bytes(tree, field.unknown, payload, at, #payload.bytes - at)
    return at, nil
  end
  local size = #operation.format
  add_bytes(tree, field.format, payload, at, size)
  tree:add(field.operation, payload:span(PAYLOAD_HEAD, 2), operation.text):set_generated()
  return at + size, operation
end

local function summary(operation, variable, outcome)
  local text = operation and operation.text or "Unknown command"
  if operation and operation.forms[1].version and #variable >= RECORD_HEAD then
    text = string.format("%s %d, layout %d", text, variable:byte(2), variable:byte(3))
  end
  return outcome and text .. ", " .. outcome or text
end

-- One binding: the identifier's payload and, in an answer, the octets behind it. An agent that
-- has an error to tell gives the binding back as it came.
local function add_binding(tree, payload, is_cut, octets, is_error, printer)
  local branch = tree:add(protocol, payload.range)
  if is_cut then
    branch:add_proto_expert_info(damaged, "A sub-identifier is not a byte")
  end
  if #payload.bytes < PAYLOAD_HEAD + COMMAND_HEAD then
    branch:add_proto_expert_info(damaged, "The command is too short")
    return "Damaged command"
  end
  local at, operation = add_head(branch, payload)
  local variable = payload:sub(at, #payload.bytes)
  local forms = operation and candidates(operation, variable) or {}
  local reply = octets and Piece.new(octets, octets:bytes():raw(), nil)
  local fields = nil
  if reply and operation then
    local from, size = reply_fields(operation, reply.bytes)
    fields = from and reply:sub(from, size)
  end
  local form = choose_form(forms, printer, variable, fields)
  if form then
    add_families(branch, form, payload, PAYLOAD_HEAD)
    add_command_fields(branch, form, payload, at)
  elseif forms[1] and end_of(forms[1].command) <= RECORD_HEAD then  -- all have the same
    add_command_fields(branch, forms[1], payload, at)
  elseif operation then
    add_bytes(branch, field.unknown, payload, at, #variable)
  end
  if is_error and not reply then
    branch:add(field.refused, payload.range, true):set_generated()
    return summary(operation, variable, "refused")
  end
  return summary(operation, variable, reply and add_reply(branch, reply, operation, form))
end

-- The octets that stand between the identifier and the next one.
local function octets_behind(identifiers, i, all_octets)
  local first = identifiers[i].offset
  local last = identifiers[i + 1] and identifiers[i + 1].offset or math.huge
  for _, octets in ipairs(all_octets) do
    if octets.offset > first and octets.offset < last then return octets.range end
  end
  return nil
end

-- A request names the printer as its destination, an answer as its source.
local function printer_of(pinfo, is_answer)
  local address = is_answer and pinfo.src or pinfo.dst
  return tostring(address) .. " " .. (is_answer and pinfo.src_port or pinfo.dst_port)
end

-- Runs behind the SNMP dissector, whatever port that one was chosen for.
function protocol.dissector(_, pinfo, tree)
  local identifiers = {identifier_field()}
  local all_octets = {octets_field()}
  local status = status_field()
  local is_error = status ~= nil and status.value ~= 0
  for i, identifier in ipairs(identifiers) do
    local payload, is_cut = payload_of(identifier.range)
    if payload then
      local octets = octets_behind(identifiers, i, all_octets)
      local printer = printer_of(pinfo, is_error or octets ~= nil)
      local text = add_binding(tree, payload, is_cut, octets, is_error, printer)
      pinfo.cols.info:append(" [" .. text .. "]")
    end
  end
end

local snmp_ports = ""

function protocol.prefs_changed()
  local ports = protocol.prefs.ports
  if ports == snmp_ports then return end
  local udp_ports, snmp = DissectorTable.get("udp.port"), Dissector.get("snmp")
  if snmp_ports ~= "" then udp_ports:remove(snmp_ports, snmp) end
  if ports ~= "" then udp_ports:add(ports, snmp) end
  snmp_ports = ports
end

register_postdissector(protocol)
