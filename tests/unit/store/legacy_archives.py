#!/usr/bin/env python3
"""Keyed archives of the earlier generation's widgets, made independently of the application.

    legacy_archives.py write FOLDER   writes the archives and preferences files listed below
    legacy_archives.py describe FILE  prints the widget configurations of a binary archive as JSON

Archives are laid out the way the platform's keyed archiver lays them out: "$archiver"
"NSKeyedArchiver", "$version" 100000, "$objects" with "$null" first and every object referred to
by UID, "$top" {"root": UID}, one class description per class with "$classname" and "$classes".
Strings are plain strings, dates NSDate with "NS.time" (seconds since 2001-01-01), colours NSColor
with "NSColorSpace" and "NSRGB" or "NSWhite" bytes, points "{x, y}" strings. In XML, UIDs are
written as {"CF$UID": n} dictionaries, as the platform does.
"""

import datetime
import json
import pathlib
import plistlib
import sys

REFERENCE_DATE = datetime.datetime(2001, 1, 1, tzinfo=datetime.timezone.utc)


def seconds_since_2001(*args):
    moment = datetime.datetime(*args, tzinfo=datetime.timezone.utc)
    return (moment - REFERENCE_DATE).total_seconds()


class Archive:
    def __init__(self):
        self.objects = ["$null"]
        self.classes = {}
        self.strings = {}

    def add(self, value):
        self.objects.append(value)
        return plistlib.UID(len(self.objects) - 1)

    def reserve(self):
        return self.add(None)

    def class_uid(self, names):
        if names[0] not in self.classes:
            self.classes[names[0]] = self.add({"$classname": names[0], "$classes": names})
        return self.classes[names[0]]

    def string(self, text):
        if text is None:
            return plistlib.UID(0)
        # The archiver writes an equal string once.
        if text not in self.strings:
            self.strings[text] = self.add(text)
        return self.strings[text]

    def date(self, seconds):
        uid = self.reserve()
        self.objects[uid.data] = {"NS.time": seconds,
                                  "$class": self.class_uid(["NSDate", "NSObject"])}
        return uid

    def color(self, space, key, components):
        uid = self.reserve()
        self.objects[uid.data] = {"NSColorSpace": space, key: components.encode() + b"\0",
                                  "$class": self.class_uid(["NSColor", "NSObject"])}
        return uid

    def config(self, **fields):
        uid = self.reserve()
        coded = {}
        for key, value in fields.items():
            coded[key] = value() if callable(value) else value
        coded["$class"] = self.class_uid(["EVWidgetConfig", "NSObject"])
        self.objects[uid.data] = coded
        return uid

    def collection(self, classes, members):
        uid = self.reserve()
        self.objects[uid.data] = {"NS.objects": members, "$class": self.class_uid(classes)}
        return uid

    def archive(self, root):
        return {"$version": 100000, "$archiver": "NSKeyedArchiver",
                "$top": {"root": root}, "$objects": self.objects}


def widgets(collection_classes):
    archive = Archive()
    # Every member is encoded before the collection's own entry is complete.
    root = archive.reserve()
    launch = archive.config(
        position="{0.25, 0.5}",
        style=3,
        eventTitle=lambda: archive.string("Launch day"),
        eventDate=lambda: archive.date(seconds_since_2001(2015, 6, 1, 9, 30)),
        enabledTime=True,
        iconFile=lambda: archive.string("rocket.png"),
        textColor=lambda: archive.color(1, "NSRGB", "1 0.5 0"),
        size=2,
        soundNotification=True,
        soundFile=lambda: archive.string("Glass"),
        minutesBeforeAlert=10,
        dateFormat=4,
        usePosPercent=True,
        keepTop=True)
    cafe = archive.config(
        position="{300, 200}",
        style=15,
        eventTitle=lambda: archive.string("Caf\u00e9 \u2615 \U0001D11E"),
        eventDate=lambda: archive.date(seconds_since_2001(1999, 12, 31, 23, 59, 59, 500000)),
        enabledTime=False,
        iconFile=lambda: archive.string(None),
        textColor=lambda: archive.color(3, "NSWhite", "0.5 0.25"),
        size=0,
        soundNotification=False,
        soundFile=lambda: archive.string(None),
        minutesBeforeAlert=0,
        dateFormat=1,
        usePosPercent=False,
        keepTop=False)
    # What an unsigned style of all ones becomes as a 32-bit integer.
    minimal = archive.config(eventTitle=lambda: archive.string("Minimal"),
                             soundFile=lambda: archive.string("Glass"),
                             style=-1)
    archive.objects[root.data] = {"NS.objects": [launch, cafe, minimal],
                                  "$class": archive.class_uid(collection_classes)}
    return archive.archive(root)


def as_xml_references(value):
    if isinstance(value, plistlib.UID):
        return {"CF$UID": value.data}
    if isinstance(value, dict):
        return {key: as_xml_references(member) for key, member in value.items()}
    if isinstance(value, list):
        return [as_xml_references(member) for member in value]
    return value


def write(folder):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    array = widgets(["NSMutableArray", "NSArray", "NSObject"])
    binary = plistlib.dumps(array, fmt=plistlib.FMT_BINARY, sort_keys=False)
    xml = plistlib.dumps(as_xml_references(array), fmt=plistlib.FMT_XML, sort_keys=False)
    files = {
        "widgets-binary.plist": binary,
        "widgets-xml.plist": xml,
        "widgets-set.plist": plistlib.dumps(widgets(["NSMutableSet", "NSSet", "NSObject"]),
                                            fmt=plistlib.FMT_BINARY, sort_keys=False),
        "preferences-binary.plist": plistlib.dumps(
            {"NSNavLastRootDirectory": "~/Desktop", "widgets": binary},
            fmt=plistlib.FMT_BINARY),
        "preferences-xml.plist": plistlib.dumps(
            {"NSNavLastRootDirectory": "~/Desktop", "widgets": xml}, fmt=plistlib.FMT_XML),
    }
    for name, contents in files.items():
        (folder / name).write_bytes(contents)


def describe(path):
    archive = plistlib.loads(pathlib.Path(path).read_bytes())
    assert archive["$archiver"] == "NSKeyedArchiver" and archive["$version"] == 100000
    objects = archive["$objects"]
    assert objects[0] == "$null"

    def resolve(uid):
        return None if uid.data == 0 else objects[uid.data]

    def class_names(value):
        return resolve(value["$class"])["$classes"]

    root = resolve(archive["$top"]["root"])
    configs = []
    for member in root["NS.objects"]:
        coded = resolve(member)
        config = {"$classes": class_names(coded), "keys": list(coded.keys())}
        for key, value in coded.items():
            if key == "$class":
                continue
            if isinstance(value, plistlib.UID):
                value = resolve(value)
                if isinstance(value, dict) and "NS.time" in value:
                    value = {"NS.time": value["NS.time"], "$classes": class_names(value)}
                elif isinstance(value, dict) and "NSColorSpace" in value:
                    components = value.get("NSRGB", value.get("NSWhite", b""))
                    value = {"NSColorSpace": value["NSColorSpace"],
                             "components": components.decode("ascii"),
                             "$classes": class_names(value)}
            config[key] = value
        configs.append(config)
    json.dump({"rootClasses": class_names(root), "configs": configs}, sys.stdout)


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1] == "write":
        write(sys.argv[2])
    elif len(sys.argv) == 3 and sys.argv[1] == "describe":
        describe(sys.argv[2])
    else:
        sys.exit(__doc__)
