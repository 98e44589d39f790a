"""What has changed since the GeoNames table of 2017 was drawn, and names it does not carry."""

# Zones that the IANA database has renamed or merged into another since then.
RENAMED_ZONES = {
    "America/Buenos_Aires": "America/Argentina/Buenos_Aires",
    "America/Godthab": "America/Nuuk",
    "America/Montreal": "America/Toronto",
    "America/Nipigon": "America/Toronto",
    "America/Pangnirtung": "America/Iqaluit",
    "America/Rainy_River": "America/Winnipeg",
    "America/Santa_Isabel": "America/Tijuana",
    "America/Thunder_Bay": "America/Toronto",
    "America/Yellowknife": "America/Edmonton",
    "Asia/Calcutta": "Asia/Kolkata",
    "Asia/Katmandu": "Asia/Kathmandu",
    "Asia/Rangoon": "Asia/Yangon",
    "Asia/Saigon": "Asia/Ho_Chi_Minh",
    "Australia/Currie": "Australia/Hobart",
    "Europe/Kiev": "Europe/Kyiv",
    "Europe/Uzhgorod": "Europe/Kyiv",
    "Europe/Zaporozhye": "Europe/Kyiv",
    "Pacific/Enderbury": "Pacific/Kanton",
    "Pacific/Ponape": "Pacific/Pohnpei",
    "Pacific/Truk": "Pacific/Chuuk",
}

# Cities whose zone was divided since then, by country and plain name. Where the new zone is younger than the
# zone tables of systems in use, another one of the same rules stands for it (Juarez, Coyhaique).
MOVED = {
    ("CL", "Coyhaique"): "America/Punta_Arenas",
    ("CL", "Punta Arenas"): "America/Punta_Arenas",
    ("KZ", "Kostanay"): "Asia/Qostanay",
    ("KZ", "Qostanay"): "Asia/Qostanay",
    ("KZ", "Rudnyy"): "Asia/Qostanay",
    ("MX", "Ciudad Juarez"): "America/Denver",
    ("MX", "Juarez"): "America/Denver",
}

# Places that are a part of a city of the table and would stand there with the whole city's population.
PARTS = {("GB", "City of London")}

COUNTRY_NAMES = {"MK": "North Macedonia", "SZ": "Eswatini"}

# What people type that the table does not list for the place, by country and plain name.
EXTRA_NAMES = {
    ("GB", "London"): ["LDN"],
    ("IN", "Bengaluru"): ["Bangalore"],
    ("IN", "Mumbai"): ["Bombay"],
    ("KZ", "Astana"): ["Nur-Sultan"],
    ("UA", "Kiev"): ["Kyiv"],
    ("US", "Los Angeles"): ["LA"],
    ("US", "New York City"): ["NYC", "New York"],
    ("US", "San Francisco"): ["SF"],
    ("US", "Washington, D.C."): ["Washington DC", "DC"],
    ("US", "Washington, D. C."): ["Washington DC", "DC"],
}
