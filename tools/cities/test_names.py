#!/usr/bin/python3
"""The rules by which names are kept, and the proof that the table's check can fail."""

import unittest

from make_cities import faults
from names import alternates

ROW = "Köln\tKoeln\tNRW\tGermany\tEurope/Berlin\t963\tCGN|Cologne\n"


class Alternates(unittest.TestCase):
    def test_keeps_what_people_type(self):
        candidates = ["Sanghaj", "SHA", "shang hai", "Shankhaj", "Shang-hai", "Шанхай", "上海", "Σανγκάη",
                      "Shanghai - 上海", "Ŝanghajo City Of China", "S'hai", "ZGSHA", "https://example.org"]
        self.assertEqual(alternates(candidates, "Shanghai", "Shanghai", ["zh"], "great"),
                         ["SHA", "Sanghaj", "Shang-hai", "上海", "Шанхай"])
        self.assertEqual(alternates(candidates, "Shanghai", "Shanghai", ["en"], "small"),
                         ["SHA", "Sanghaj", "Shang-hai"])

    def test_drops_what_folds_to_a_name_that_stands(self):
        self.assertEqual(alternates(["SAO PAULO", "Sao Paulo", "São  Paulo"], "São Paulo", "Sao Paulo", [], "great"),
                         [])


class Faults(unittest.TestCase):
    def found(self, text):
        return [fault for fault in faults(text) if "rows are not about" not in fault]

    def test_a_good_row_has_none(self):
        self.assertEqual(self.found(ROW), [])

    def test_each_fault_is_seen(self):
        bad = {"a row twice": ROW + ROW, "a column short": ROW.replace("\tCGN|Cologne", ""),
               "rising population": ROW + ROW.replace("963", "964").replace("NRW", "X"),
               "an old zone": ROW.replace("Europe/Berlin", "Asia/Calcutta"),
               "a plain name that is the name": ROW.replace("Köln", "Koeln"),
               "an empty alternate": ROW.replace("CGN|", "CGN||"), "no zone": ROW.replace("Europe/Berlin", ""),
               "no end": ROW.rstrip("\n")}
        for name, text in bad.items():
            with self.subTest(name):
                self.assertEqual(len(self.found(text)), 1, self.found(text))


if __name__ == "__main__":
    unittest.main()
