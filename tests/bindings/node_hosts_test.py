"""The npm package in a fresh project, on the natively built library: what takes no Windows, in a fraction of the time."""
import unittest

from stage import BINARIES, NAME, TESTS, Stage, install_node_package


class Node_hosts_test(Stage):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        install_node_package(cls.folder)
        (cls.folder / "hosts.js").write_bytes((TESTS / "hosts.js").read_bytes())

    def test_what_a_host_sees(self):
        scenario = self.scenario(frame_rate=0, scanners=[{"name": NAME, "snapshot": self.file("snapshot", b"abc")}, {"name": "two"}])
        environment = dict(scenario, VYRA_SIMULATOR=str(BINARIES / "libBrenvoZulta_USB.so"),
                           VYRA_LIBRARY=str(self.folder / "node_modules/vyrabrenvozulta/bin/libvyrabrenvozulta.so"))
        self.maxDiff = None
        self.assertEqual(self.run_to_end(["node", "hosts.js"], environment, code=3).splitlines(), [
            "Error: the library works already in this process: close it first",
            "3216 2004 true",
            "4096 abc 3",
            "800 null",
            '{"groupA":[0,0,0,0],"groupB":[0,2,0,0],"groupC":[0,0],"on":"B"}',
            "VyraError: VyraBrenvoSetBuzzer: 9109. A null pointer, a zero capacity or a value out of range",
            f'Error: "{NAME}" was closed',
            "Error: this video ended with the scanner's restart: close it and start it anew",
            "gone false",
            "1600",
            "this video was closed,this video was closed,this video was closed",
            f'Error: "{NAME}" delivers no images, since another scanner was opened: open it anew',
            f'Error: opening "{NAME}" would displace "two": close scanners in reverse order of opening',
            "VyraError: VyraStopVideo: 9000. The manager was busy for more than 5 seconds, or the driver library could not be "
            "brought up or down, found no scanner, or failed in a way that no closer code describes",
            "unreturned 2",
            "unreturned 0",
            "ScannerGoneError: VyraGetVideoResult: 9005. The scanner was unplugged",
            "false",
            "of a listener",
            f'Error: the video of "{NAME}" runs already: close it first',
            "open at the end 0"])


if __name__ == "__main__":
    unittest.main()
