"""What Python adds to the host library: names, types, lifetimes, exceptions, and stubs that say the same.

The environment has the source tree in TYPDESCRIPTOR_SOURCE_DIR."""

import ast
import doctest
import gc
import inspect
import json
import os
import pathlib
import re
import tempfile
import threading
import unittest

import typdescriptor
from typdescriptor import _native

EXAMPLES = pathlib.Path(os.environ["TYPDESCRIPTOR_SOURCE_DIR"]) / "examples" / "gsd"
HEAD = EXAMPLES / "RIO40A17.GSE"


class Devices(unittest.TestCase):
    def test_the_examples_of_package_and_readme_work_as_written(self):
        readme = (EXAMPLES.parent.parent / "README.md").read_text(encoding="utf-8")
        [session] = re.findall("```pycon\n(.*?)```", readme, re.DOTALL)
        runner = doctest.DocTestRunner()
        before = os.getcwd()
        os.chdir(EXAMPLES)
        try:
            for text in (session, typdescriptor.__doc__):
                runner.run(doctest.DocTestParser().get_doctest(text, {}, "as written", None, 0))
        finally:
            os.chdir(before)
        self.assertEqual(runner.failures, 0)
        self.assertEqual(runner.tries, 11)

    def test_parts_outlive_the_device_they_come_from(self):
        sensor = typdescriptor.load(HEAD).blocks[7].parameters[0]
        station = typdescriptor.load(HEAD).explain(bytes.fromhex("080C00020A17")).station.states[0]
        gc.collect()
        self.assertEqual((sensor.name, sensor.text_of(2), sensor.allows(10)), ("Sensor", "Ni100", False))
        self.assertEqual(station.name, "extendedDiagnosis")

    def test_values_are_read_only(self):
        device = typdescriptor.load(HEAD)
        self.assertIsInstance(device.modules, tuple)
        self.assertIsInstance(device.parameters.bytes, bytes)
        for thing, name in ((device, "model_name"), (device.modules[0], "name"), (device.parameters, "bytes")):
            with self.assertRaises(AttributeError):
                setattr(thing, name, None)

    def test_what_only_the_gsd_file_says_is_none_without_it(self):
        whole, bare = typdescriptor.load(HEAD), typdescriptor.load(os.fspath(HEAD), with_gsd_facts=False)
        self.assertEqual((whole.gsd.vendor_name, whole.vendor_name), ("Tarnholt Automation", "TarnholtAu"))
        self.assertIsNone(bare.gsd)
        self.assertEqual(whole.ident_number, bare.ident_number)

    def test_load_errors_have_code_and_line(self):
        with tempfile.TemporaryDirectory() as folder:
            broken = pathlib.Path(folder) / "BROKEN.GSE"
            broken.write_text("#Profibus_DP\nVendor_Name = \"A\"\nIdent_Number = 0x12345\n", encoding="ascii")
            for path, code, line in ((broken, -209, 3), (pathlib.Path(folder) / "none.gsd", 0, None)):
                with self.assertRaises(typdescriptor.LoadError) as caught:
                    typdescriptor.load(path)
                self.assertEqual((caught.exception.code, caught.exception.line), (code, line))
                self.assertIn(path.name, str(caught.exception))

    def test_devices_are_found_by_ident_number(self):
        self.assertEqual(typdescriptor.find(EXAMPLES, 0x0A17), [HEAD])

    def test_threads_load_at_once(self):
        models = []
        threads = [threading.Thread(target=lambda path=path: models.append(typdescriptor.load(path).model_name))
                   for path in sorted(EXAMPLES.iterdir())]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(sorted(models), sorted(typdescriptor.load(path).model_name for path in EXAMPLES.iterdir()))


class Configurations(unittest.TestCase):
    def setUp(self):
        self.device = typdescriptor.load(HEAD)

    def test_a_plan_by_steps_by_mappings_and_from_json_is_the_same(self):
        plan = typdescriptor.Plan()
        plan.plug(5, "40-4AI Pt100")
        plan.set(5, "Sensor", "Ni100")
        plan.set(0, "Cycle time of the internal bus", 0x0102)
        plan.standard.watchdog_milliseconds = 100
        by_steps = self.device.configure(plan)
        self.assertEqual(by_steps.set_prm[:7].hex(), "8801 0a0b 0a17 00".replace(" ", ""))
        self.assertEqual(by_steps.user_prm[5:7].hex(), "0102")
        self.assertEqual(by_steps.set_prm[7:], by_steps.user_prm)
        self.assertEqual([byte.value for byte in by_steps.chk_cfg_bytes], list(by_steps.chk_cfg))
        other = typdescriptor.Plan({5: "40-4AI Pt100"}, {(5, "Sensor"): 2, (0, "Cycle time of the internal bus"): 258})
        other.standard.watchdog_milliseconds = 100
        again = typdescriptor.Plan.from_json(plan.to_json(self.device), self.device)
        for same in (other, again):
            self.assertEqual(self.device.configure(same).set_prm, by_steps.set_prm)

    def test_refusals_say_what_would_be_allowed(self):
        for arguments, fields in (
                ({"values": {(0, "Cycle time of the internal bus"): 99}},
                 ("outOfRange", 0, "Cycle time of the internal bus", "99", "100 to 10000")),
                ({"modules": {99: "#1"}}, (None, 99, "", None, None))):
            with self.assertRaises(typdescriptor.ChoiceError) as caught:
                self.device.configure(**arguments)
            error = caught.exception
            said = (error.name, error.slot, error.parameter, error.value, error.allowed)
            for value, expected in zip(said, fields):
                if expected is not None:
                    self.assertEqual(value, expected)
            self.assertIsInstance(error, ValueError)

    def test_what_the_device_does_not_allow_is_a_problem(self):
        plan = typdescriptor.Plan({slot: "#25" for slot in range(5, 41)})
        problems = self.device.configure(plan).problems
        self.assertTrue(any("bytes of input data" in str(problem) for problem in problems), problems)

    def test_captured_telegrams_give_the_plan_back(self):
        planned = self.device.configure(modules={5: "40-4AI Pt100"}, values={(5, "Sensor"): "Ni100"})
        capture = self.device.read_back(chk_cfg=planned.chk_cfg, set_prm=planned.set_prm, planned=planned)
        self.assertEqual(self.device.configure(capture.plan).set_prm, planned.set_prm)
        self.assertEqual(self.device.differences(planned, capture), ())
        changed = bytearray(planned.set_prm)
        changed[-3] = 1
        capture = self.device.read_back(chk_cfg=planned.chk_cfg, set_prm=bytes(changed), planned=planned)
        [difference] = self.device.differences(planned, capture)
        self.assertEqual((difference.slot, difference.parameter), (5, "Sensor"))


class Diagnoses(unittest.TestCase):
    def test_a_configuration_names_the_modules(self):
        device = typdescriptor.load(HEAD)
        configuration = device.configure(modules={5: "40-4AI Pt100"})
        diagnosis = device.explain(bytes.fromhex("080C00020A17 4210 848022"), configuration)
        identifiers, channel = diagnosis.blocks
        self.assertEqual([place.module for place in identifiers.identifiers], ["40-4AI Pt100"])
        self.assertEqual((channel.kind, channel.channel.place.slot, channel.channel.error_type), ("channel", 5, 2))
        self.assertEqual(diagnosis.station.master, 2)
        self.assertEqual(diagnosis.problems, ())

    def test_json_and_dictionaries_are_the_same(self):
        device = typdescriptor.load(HEAD)
        for thing in (device, device.configure(), device.explain(b"\x00\x0c\x00\x02\x0a\x17")):
            self.assertEqual(thing.to_dict(), json.loads(thing.to_json()))
            self.assertGreater(len(thing.to_dict()), 3)


class Checks(unittest.TestCase):
    def test_findings_have_places_notes_and_mends(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "FAULTY.GSE"
            path.write_bytes(HEAD.read_bytes().replace(b"Max_Data_Len            = 240", b"Max_Data_Len = 999")
                             .replace(b"Min_Slave_Intervall ", b"Min_Slave_Interval "))
            findings = typdescriptor.check(path)
        errors = [finding for finding in findings if finding.severity == "error"]
        [length] = [finding for finding in errors if finding.rule == "data-length-above-sum"]
        self.assertEqual((length.line, length.column, length.end_column), (83, 16, 19))
        self.assertEqual(len(length.notes), 2)
        [misspelt] = [finding for finding in findings if "Min_Slave_Interval" in finding.message and finding.mend]
        self.assertEqual([mend.text for mend in misspelt.mend], ["Min_Slave_Intervall"])
        self.assertLessEqual({finding.rule for finding in findings}, {rule.name for rule in typdescriptor.rules()})

    def test_a_file_that_cannot_be_read_is_an_os_error(self):
        for path in ("nowhere.gsd", EXAMPLES):
            with self.assertRaises(OSError):
                typdescriptor.check(path)


class Stubs(unittest.TestCase):
    """The stubs name what the module has, and nothing else."""

    @staticmethod
    def members(tree):
        names = set()
        for node in tree.body:
            if isinstance(node, ast.FunctionDef):
                names.add(node.name)
            elif isinstance(node, ast.AnnAssign):
                names.add(node.target.id)
        return {name for name in names if not name.startswith("_")}

    def test_stubs_and_module_have_the_same_names(self):
        folder = pathlib.Path(typdescriptor.__file__).parent
        self.assertTrue((folder / "py.typed").exists())
        stub = ast.parse((folder / "__init__.pyi").read_text(encoding="utf-8"))
        classes = {node.name: self.members(node) for node in stub.body if isinstance(node, ast.ClassDef)}
        self.assertEqual(self.members(stub) | set(classes), {name for name in vars(_native) if not name.startswith("_")})
        for name, members in classes.items():
            known = getattr(typdescriptor, name)
            self.assertEqual(known.__module__, "typdescriptor")
            if not inspect.isclass(known) or issubclass(known, Exception):
                continue
            self.assertEqual(members, {member for member in vars(known) if not member.startswith("_")}, name)


if __name__ == "__main__":
    unittest.main()
