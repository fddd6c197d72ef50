"""What a printer holds and a worker answers, told from the tables of docs/parameters.md alone."""

import re

SLOTS = 30
STAYS = 0xFF
REFUSED_NAME = "\0" * 32


class Field:
    """One row of a table: a parameter of a layout."""

    def __init__(self, row):
        self.name, place, reply, self.left_out, values = row
        self.position = int(place.split()[0])
        self.is_read = reply != ""
        self.is_text = "text" in values or "digits" in values
        self.names = {int(byte): name for name, byte in re.findall(r"`([^`]+)` (\d+)", values)}
        shift = re.search(r"number ([-+]) (\d+)", values)
        self.shift = int(shift[1] + shift[2]) if shift else 0
        # Layouts share the settings of a record by their place, the others by their names.
        self.is_setting = self.position > 2 and not self.is_text and self.name != "RegistrationFlag"
        self.key = self.position if self.is_setting else self.name

    def shown(self, byte):
        return self.names.get(byte, byte - self.shift)

    def byte(self, shown):
        for byte, name in self.names.items():
            if name == shown:
                return byte
        return shown + self.shift


def read_layouts(page):
    """From a device name without "Series" to its layouts: version to list of fields."""
    layouts = {}
    for section in re.split(r"^## Layout ", page, flags=re.M)[1:]:
        version = int(section.split()[0])
        rows = re.findall(r"^\| `(\w+)` \| (.*?) \| (.*?) \| (.*?) \| (.*?) \|$", section, re.M)
        for device in set(re.findall(r"QM-[A-Z0-9]+", section.split("\n|")[0])):
            layouts.setdefault(device, {})[version] = [Field(row) for row in rows]
    return layouts


class MediaModel:
    """The records of one printer."""

    def __init__(self, layouts):
        self.layouts = layouts
        self.device_code = 0
        self.factory = {"RegistrationFlag": 0}
        self.records = {}

    def learn(self, version, answer):
        """Takes factory settings from the reading of a record that was never written."""
        self.device_code = answer["DeviceID"]
        for field in self.layouts[version]:
            if field.is_read:
                shown = answer[field.name]
                self.factory[field.key] = shown if field.is_text else field.byte(shown)

    def initialize(self, slot):
        self.records.pop(slot, None)

    def record(self, slot):
        return self.records.get(slot, self.factory)

    def write(self, version, parameters):
        record = self.records.setdefault(parameters["CustomMediaNo"], dict(self.factory))
        for field in self.layouts[version]:
            if field.name in parameters:
                shown = parameters[field.name]
                record[field.key] = shown if field.is_text else field.byte(shown)
            elif field.left_out.isdigit():
                record[field.key] = int(field.left_out)

    def reading(self, version, slot):
        """The reply to reading a record. A refused one reads as zeros."""
        fields = [field for field in self.layouts[version] if field.is_read]
        if slot > SLOTS:
            return {field.name: REFUSED_NAME if field.is_text else field.shown(0)
                    for field in fields}
        record = {**self.record(slot), "CustomMediaNo": slot, "CommandVersion": version,
                  "DeviceID": self.device_code}
        return {field.name: record[field.key] if field.is_text else field.shown(record[field.key])
                for field in fields}

    def names(self, first):
        """The reply to reading three names."""
        reply = []
        for slot in range(first, first + 3):
            record = self.record(slot) if slot <= SLOTS else {}
            reply.append({"CustomMediaName": record.get("CustomMediaName", ""),
                          "CustomMediaNo": slot if slot <= SLOTS else 0,
                          "RegistrationFlag": record.get("RegistrationFlag", 0)})
        return reply


def to_text(shown):
    """A value as the worker writes it: names with its few escapes, keys in the order of bytes."""
    if isinstance(shown, dict):
        return "{" + ",".join(f'"{key}":{to_text(shown[key])}' for key in sorted(shown)) + "}"
    if isinstance(shown, list):
        return "[" + ",".join(to_text(item) for item in shown) + "]"
    if isinstance(shown, str):
        return '"' + re.sub(r'([\\/"])', r"\\\1", shown) + '"'
    return str(shown)
