"""Photographs whose metadata a test knows, as it has written them itself."""

import dataclasses
import errno
import os
import random
import shutil
import subprocess

import pngfile

# Real pictures of the corpus, small and of several formats that exiv2 writes.
_REAL = ("adobergb.jpg", "p3_gainmap.jpg", "progressive.jpg", "cmyk.jpg", "rgb16.png",
         "cmyk_strip.tif", "anim.webp")
_WORDS = ("beach", "Beach", "STRAND", "Malmö", "malmo", "São Paulo", "sao paulo", "work", "Ærø",
          "東京", "100%", "a_b", "it's", "snow", "snowman")
_TAGS = ("Best", "best", "Höst", "host", "Familie", "work", "naïve")
_CITIES = ("Malmö", "MALMO", "Oslo", "São Paulo", "東京", "Tromsø")
_CAMERAS = (("NIKON CORPORATION", "NIKON D90"), ("Canon", "Canon EOS 5D"), ("Apple", "iPhone 12"),
            ("NIKON", "D1"))
_AT_ONCE = 20  # photographs with the same embedded metadata


@dataclasses.dataclass
class Photo:
    """Where one is, relative to the folder of all, and its metadata: lists of texts."""
    path: str
    metadata: dict


@dataclasses.dataclass
class Embedded:
    keywords: list  # by IPTC
    subject: list  # by XMP
    city: str
    camera: tuple

    def commands(self):
        lines = [f"set Exif.Image.Make {self.camera[0]}", f"set Exif.Image.Model {self.camera[1]}"]
        lines += [f"add Iptc.Application2.Keywords String {word}" for word in self.keywords]
        lines += [f"set Xmp.dc.subject XmpBag {word}" for word in self.subject]
        lines += [f"set Xmp.photoshop.City {self.city}"] if self.city else []
        return [part for line in lines for part in ("-M", line)]


def templates(corpus, folder):
    """Pictures without metadata: real ones where there is a corpus of them, else painted ones."""
    made = []
    for name in _REAL if corpus else ("painted.png",):
        path = os.path.join(folder, name)
        if corpus:
            shutil.copyfile(os.path.join(corpus, name), path)
            subprocess.run(["exiv2", "-q", "-dexi", "rm", path], check=True)
        else:
            with open(path, "wb") as file:
                file.write(pngfile.encode(64, 48, (90, 120, 40)))
        made.append(path)
    return made


def make(root, count, pictures, seed):
    """Makes so many below `root`, in some folders, as copies of `pictures`."""
    generator = random.Random(seed)
    photos = []
    while len(photos) < count:
        embedded = Embedded(keywords=generator.sample(_WORDS, generator.choice((0, 0, 1, 3))),
                            subject=generator.sample(_TAGS + _WORDS[:4],
                                                     generator.choice((0, 0, 1, 2))),
                            city=generator.choice(_CITIES + ("",)),
                            camera=generator.choice(_CAMERAS))
        batch = [_copy(root, len(photos) + i, generator, pictures)
                 for i in range(min(_AT_ONCE, count - len(photos)))]
        paths = [os.path.join(root, path) for path in batch]
        subprocess.run(["exiv2", "-q", *embedded.commands(), *paths], check=True)
        for path in batch:
            photos.append(Photo(path, _metadata(path, embedded, _tag(root, path, generator))))
    return photos


def _copy(root, number, generator, pictures):
    picture = generator.choice(pictures)
    folder = generator.choice((".", "2019/Summer", "2020", "2020/Höst"))
    os.makedirs(os.path.join(root, folder), exist_ok=True)
    word = generator.choice(("IMG_", "Beach ", "DSC", "Malmö-"))
    path = os.path.normpath(os.path.join(folder, f"{word}{number:04}{os.path.splitext(picture)[1]}"))
    shutil.copyfile(picture, os.path.join(root, path))
    return path


def _tag(root, path, generator):
    """Tags some files as desktops do; those tags, or None where a file has none of this kind."""
    if generator.random() < 0.6:
        return None
    tags = generator.sample(_TAGS, 2)
    try:
        os.setxattr(os.path.join(root, path), "user.xdg.tags", ", ".join(tags).encode())
    except OSError as problem:
        if problem.errno != errno.ENOTSUP:  # such a file system has no tags
            raise
        return None
    return tags


def _metadata(path, embedded, tags):
    keywords = [] if path.endswith(".webp") else embedded.keywords  # WebP holds no IPTC
    return {"kMDItemFSName": [os.path.basename(path)],
            "kMDItemKeywords": embedded.subject + keywords,
            "kMDItemUserTags": embedded.subject if tags is None else tags,
            "kMDItemCity": [embedded.city] if embedded.city else [],
            "kMDItemAcquisitionMake": [embedded.camera[0]],
            "kMDItemAcquisitionModel": [embedded.camera[1]]}
