"""Which of a place's many alternate names someone would type."""

import re
import unicodedata

LONGEST = 32
# How many names in Latin letters, and in each other script that is read where the city lies or everywhere.
FAME = {"great": (40, 6), "large": (12, 4), "small": (5, 3)}
AIRPORT = re.compile(r"[A-Z]{3}$")
NOISE = re.compile(r"[0-9()\[\]/|\t\\\";:?*=&@#%]|'| - ")

# The script in which a language is written, for the languages that are not written in Latin letters.
SCRIPTS = {
    "am": "ETHIOPIC", "ar": "ARABIC", "as": "BENGALI", "be": "CYRILLIC", "bg": "CYRILLIC", "bn": "BENGALI",
    "dv": "THAANA", "dz": "TIBETAN", "el": "GREEK", "fa": "ARABIC", "gu": "GUJARATI", "he": "HEBREW",
    "hi": "DEVANAGARI", "hy": "ARMENIAN", "iw": "HEBREW", "ja": "CJK", "ka": "GEORGIAN", "kk": "CYRILLIC",
    "km": "KHMER", "kn": "KANNADA", "ko": "HANGUL", "ky": "CYRILLIC", "lo": "LAO", "mk": "CYRILLIC",
    "ml": "MALAYALAM", "mn": "CYRILLIC", "mr": "DEVANAGARI", "my": "MYANMAR", "ne": "DEVANAGARI",
    "or": "ORIYA", "pa": "GURMUKHI", "ps": "ARABIC", "ru": "CYRILLIC", "si": "SINHALA", "sr": "CYRILLIC",
    "ta": "TAMIL", "te": "TELUGU", "tg": "CYRILLIC", "th": "THAI", "ti": "ETHIOPIC", "uk": "CYRILLIC",
    "ur": "ARABIC", "yue": "CJK", "zh": "CJK",
}
# What the whole world reads a great city's name in.
WIDELY_READ = {"ARABIC", "CJK", "CYRILLIC", "DEVANAGARI", "HANGUL", "KATAKANA"}
# GeoNames carries letter-by-letter romanisations of Cyrillic names, which nobody writes.
ROMANISED = dict(zip("абвгдезиклмнопрстуфйъыьэ", "abvgdeziklmnoprstufj'y'e"))
ROMANISED.update({"ж": "zh", "х": "kh", "ц": "c", "ч": "ch", "ш": "sh", "щ": "shch", "э": "eh", "ю": "ju",
                  "я": "ja", "ё": "jo", "ј": "j", "ґ": "g", "і": "i", "ї": "ji", "є": "je", "ў": "u",
                  "љ": "lj", "њ": "nj", "џ": "dzh", "ђ": "dj", "ћ": "c"})


def fold(text):
    decomposed = unicodedata.normalize("NFKD", text)
    return "".join(letter for letter in decomposed if unicodedata.category(letter) != "Mn").casefold().strip()


def script_of(text):
    """The script of a text's first letter, or None when it has letters of another one too."""
    found = set()
    for letter in text:
        if unicodedata.category(letter)[0] == "L":
            word = unicodedata.name(letter, "UNKNOWN").split()[0].split("-")[0]
            found.add("KATAKANA" if word == "HIRAGANA" else word)
    return found.pop() if len(found) == 1 else None


def romanised(text):
    return "".join(ROMANISED.get(letter, letter) for letter in text.lower()).replace("'", "")


def is_clean(text):
    return 2 <= len(text) <= LONGEST or (len(text) == 1 and script_of(text) == "CJK")


def alternates(candidates, name, plain, languages, fame):
    """Airport codes first, then foreign names in Latin letters, then names in the scripts people read there.

    A name that begins with a small Latin letter is a transcription made by rule and is left out, like one
    that folds to a name which stands already and one with more words than the name ("City of ...").
    """
    most_latin, most_others = FAME[fame]
    words = len(name.split())
    candidates = [" ".join(text.split()) for text in candidates]
    candidates = [text for text in candidates if is_clean(text) and not NOISE.search(text)]
    scripts = {text: script_of(text) for text in candidates}
    own = {SCRIPTS[language] for language in languages if language in SCRIPTS}
    if "ja" in languages:
        own.add("KATAKANA")
    by_rule = {romanised(text) for text in candidates if scripts[text] == "CYRILLIC"}

    seen = {fold(name), fold(plain)}
    codes, latin, others = [], [], {}
    for text in candidates:
        folded, script = fold(text), scripts[text]
        if folded in seen or not script:
            continue
        if AIRPORT.match(text):
            codes.append(text)
        elif script == "LATIN":
            if (not text[0].isupper() or text.isupper() or folded in by_rule or len(latin) >= most_latin
                    or len(text.split()) > words + 1):
                continue
            latin.append(text)
        elif script in own or (fame == "great" and script in WIDELY_READ):
            if len(others.setdefault(script, [])) >= most_others or len(text.split()) > words:
                continue
            others[script].append(text)
        else:
            continue
        seen.add(folded)
    return codes + latin + [text for script in sorted(others) for text in others[script]]
