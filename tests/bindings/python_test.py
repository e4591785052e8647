"""The wheel in a fresh environment, on the natively built library."""
import os
import subprocess
import sys
import textwrap
import unittest

from stage import EXAMPLES, NAME, PGM, TESTS, Stage, package


class Python_test(Stage):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        wheel = package("python", cls.folder, "linux_x86_64")
        environment = cls.folder / "environment"
        subprocess.run([sys.executable, "-m", "venv", "--without-pip", "--system-site-packages", environment], check=True)
        cls.python = environment / "bin" / "python"
        subprocess.run([sys.executable, "-m", "pip", "--python", cls.python, "install", "--quiet", "--no-index", "--no-deps",
                        "--disable-pip-version-check", wheel], check=True, stderr=subprocess.DEVNULL)

    def run_host(self, code, environment):
        """Runs a host in the fresh environment; it has vyra and PGM's pixels."""
        library = 'import glob, os, vyra\nfolder = os.path.dirname(vyra.__file__)\n' \
                  'os.environ["VYRA_LIBRARY"] = glob.glob(folder + "/bin/*")[0]\n'
        environment = dict(environment, PYTHONPATH=str(TESTS))
        return self.run_to_end([self.python, "-B", "-c", library + textwrap.dedent(code)], environment)

    def test_the_example_captures_the_scanners_image(self):
        environment = dict(self.scenario(), VYRA_LIBRARY=str(next(self.folder.glob("environment/lib/*/*/vyra/bin/*"))))
        out = self.run_to_end([self.python, EXAMPLES / "python" / "capture.py", "finger.pgm"], environment)
        self.assertEqual((self.folder / "finger.pgm").read_bytes(), PGM)
        self.assertEqual(out, "mean 125.0, darkest 0\nfinger.pgm: 1600 x 1500\n")

    def test_the_installed_files_are_the_packages(self):
        out = self.run_host("print(vyra.__file__)", self.scenario())
        self.assertTrue(out.startswith(str(self.folder)), out)

    def test_the_records_have_the_sizes_of_the_headers(self):
        out = self.run_host("""
            import ctypes
            from vyra import _interface as i
            print(*map(ctypes.sizeof, (i.DeviceListRecord, i.DeviceInfo, i.VyraDeviceCapabilities, i.DevUI)))
            print(i.DeviceListRecord.name.offset, i.DeviceInfo.version.offset, i.DevUI.group_a_on.offset)
            """, self.scenario())
        self.assertEqual(out, "260 52 56 52\n4 40 40\n")

    def test_a_scanner_says_who_it_is(self):
        out = self.run_host("""
            with vyra.Library() as library:
                name = library.scanners()[0]
                print(name, *library.info(name))
                with library.open(name.upper()) as scanner:
                    print(*scanner.info(), scanner.roll_supported(), scanner.port_type(), len(scanner.parameters()))
                    print(scanner.capabilities(0).resolution, scanner.capabilities(3))
                    scanner.show(vyra.Leds(group_b=(0, 2, 0, 0), group_b_on=True))
                    print(scanner.leds().group_b, scanner.leds().group_b_on, scanner.leds().group_a_on)
            """, self.scenario(scanners=[{"name": "Desk 1", "serial_number": "RQ7000000042", "version": "3.1.c", "port_type": 2}]))
        self.assertEqual(out, "Desk 1 ORVANE RQ7-3050 RQ7000000042 3.1.c\n"
                              "ORVANE RQ7-3050 RQ7000000042 3.1.c True 2 4096\n500 None\n(0, 2, 0, 0) True False\n")

    def test_images_stay_as_they_came(self):
        out = self.run_host(f"""
            with vyra.Library() as library, library.open({NAME!r}) as scanner, scanner.video(requests=2) as video:
                kept = [video.wait(timeout=20) for _ in range(4)]
            print(len({{bytes(image) for image in kept}}), kept[0].data.shape, kept[0].data[1, 1])
            """, self.scenario())
        self.assertEqual(out, f"1 (1500, 1600) {(7 + 13) % 251}\n")

    def test_an_unplugged_scanner_ends_the_wait(self):
        out = self.run_host(f"""
            events = []
            with vyra.Library(on_plug=lambda *event: events.append(event)) as library:
                scanner = library.open({NAME!r})
                video = scanner.video()
                try:
                    while True:
                        video.wait(timeout=20)
                except vyra.ScannerGone as gone:
                    print(gone.status, gone, events)
                video.close()
            """, self.unplugged_and_plugged())
        self.assertEqual(out, f"9005 VyraGetVideoResult: 9005. The scanner was unplugged [({NAME!r}, False)]\n")

    def test_failures_are_typed(self):
        out = self.run_host(f"""
            import threading
            with vyra.Library() as library:
                try:
                    library.open("nobody")
                except vyra.ScannerGone as error:
                    print(error.function, error.status)
                with library.open({NAME!r}) as scanner:
                    try:
                        library.open({NAME!r})
                    except vyra.Error as error:
                        print(error)
                    with scanner.video() as video:
                        try:
                            video.wait(timeout=0.01)
                        except TimeoutError as error:
                            print(error)
                        stop = threading.Event()
                        stop.set()
                        print(video.wait(stop=stop))
                        try:
                            scanner.video()
                        except RuntimeError as error:
                            print(error)
                try:
                    vyra.Library()
                except RuntimeError as error:
                    print(error)
            """, self.scenario(frame_rate=0))
        self.assertEqual(out.splitlines(), [
            "VyraOpenDevice 9005",
            "VyraOpenDevice: 9110. The scanner is open already or not open at all, or the system is asleep",
            "no image within 0.01 s", "None", f'the video of "{NAME}" runs already: close it first',
            "the library works already in this process: close it first"])

    def test_a_library_that_was_closed_can_be_opened_again(self):
        out = self.run_host("""
            for _ in range(3):
                library = vyra.Library()
                scanner = library.open(library.scanners()[0])
                scanner.video()
                library.close()
                library.close()
            print("done")
            library = vyra.Library()
            library.open(library.scanners()[0]).video()
            """, self.scenario())  # the last one is closed at the end of the process
        self.assertEqual(out, "done\n")

    def test_an_empty_bus_is_an_empty_list(self):
        self.assertEqual(self.run_host("""
            with vyra.Library() as library:
                print(library.scanners())
            """, self.scenario(scanners=[])), "[]\n")

    def test_sleep_and_usb_devices_are_told_on_the_librarys_thread(self):
        out = self.run_host("""
            import sys, threading, system_events
            told, raised = [], []
            sys.unraisablehook = lambda failure: raised.append(str(failure.exc_value))
            def tell(kind):
                def callback(value):
                    told.append((kind, value, threading.current_thread() is threading.main_thread()))
                    raise ValueError("of " + kind)
                return callback
            with vyra.Library() as library:
                power = library.on_power(tell("power"))
                usb = library.on_usb(0x1234, 0xAB, tell("usb"))
                system_events.sleep()
                system_events.resume()
                system_events.arrive(0x1234, 0xAB)
                system_events.arrive(0x1234, 0xAC)
                system_events.remove(0x1234, 0xAB)
                print(*told, sep="\\n")
                print(raised)
                told.clear()
                power.close()
                usb.close()
                usb.close()
                system_events.sleep()
                system_events.remove(0x1234, 0xAB)
                system_events.resume()
                print(told)
            """, self.scenario())
        # The library writes two lines of its own at each sleep and resume.
        self.assertEqual([line for line in out.splitlines() if not line.startswith("RQ7-3050")], [
            "('power', True, False)", "('power', False, False)", "('usb', True, False)", "('usb', False, False)",
            "['of power', 'of power', 'of usb', 'of usb']", "[]"])

    def test_a_subscription_may_end_inside_its_own_call(self):
        out = self.run_host("""
            import system_events
            with vyra.Library() as library:
                told = []
                power = library.on_power(lambda asleep: (told.append(asleep), power.close()))
                usb = library.on_usb(1, 2, lambda plugged: (told.append(plugged), usb.close()))
                system_events.sleep()
                system_events.resume()
                system_events.arrive(1, 2)
                system_events.remove(1, 2)
                print(told)
            """, self.scenario())
        self.assertIn("[True, True]\n", out)

    def test_subscriptions_end_with_the_library(self):
        out = self.run_host("""
            import system_events
            told = []
            for _ in range(12):  # the table of power subscriptions has ten places
                library = vyra.Library()
                library.on_power(told.append)
                old = library.on_usb(1, 2, told.append)
                library.close()
            with vyra.Library() as library:
                new = library.on_usb(1, 2, lambda plugged: print("new", plugged))
                try:
                    library.on_usb(1, 2, print)
                except RuntimeError as error:
                    print(error)
                old.close()
                system_events.arrive(1, 2)
                system_events.sleep()
            print(told)
            """, self.scenario())
        self.assertEqual(out.replace("RQ7-3050 sleep\n", ""),
                         "0001:0002 is subscribed already, or nine pairs are\nnew True\n[]\n")

    def test_a_scanner_gives_its_data(self):
        out = self.run_host(f"""
            import system_events
            with vyra.Library() as library, library.open({NAME!r}) as scanner:
                image = scanner.calibration()
                print(image.width, image.height, image.data[1002, 1608] > image.data[0, 0])
                print(len(scanner.parameters()), scanner.snapshot(3, 11, 22, 33))
                scanner.beep(vyra.TONE_LOW)
                try:
                    scanner.beep(4)
                except vyra.Error as error:
                    print(error.status)
            """, self.scenario(scanners=[{"name": NAME, "snapshot": self.file("snapshot", b"abc")}]))
        self.assertEqual(out, "3216 2004 True\n4096 b'abc'\n9109\n")

    def test_a_scanner_that_the_host_restarts_is_not_gone(self):
        out = self.run_host(f"""
            import system_events
            with vyra.Library() as library, library.open({NAME!r}) as scanner:
                video = scanner.video()
                scanner.reset()
                system_events.wait_for_restart({NAME!r})
                try:
                    video.wait(timeout=20)
                except RuntimeError as error:
                    print(error)
                video.close()
                scanner.load_firmware(bytes(1000))
                system_events.wait_for_restart({NAME!r})
                print(scanner.gone)
                with scanner.video() as video:
                    system_events.simulator.brenvozulta_sim_deliver_next(None)
                    print(video.wait(timeout=20).width)
                    system_events.unplug({NAME!r})
                    try:
                        video.wait(timeout=20)
                    except vyra.ScannerGone:
                        print("gone", scanner.gone)
            """, self.scenario(frame_rate=0, idle_stop_result=0))
        self.assertEqual(out, "this video ended with the scanner's restart: close it and start it anew\nFalse\n1600\ngone True\n")

    def test_a_wait_for_a_change_ends(self):
        out = self.run_host(f"""
            import threading, system_events
            with vyra.Library() as library:
                scanner = library.open({NAME!r})
                system_events.unplug({NAME!r})
                print(scanner.wait_for_change())  # a change that nobody waited for is kept
                answers = []
                called = threading.Event()
                status = scanner._functions.VyraGetStatus
                class Watched:
                    def __getattr__(self, name):
                        return getattr(library._functions, name)
                    def VyraGetStatus(self, handle):
                        called.set()  # from here on a close is a change, also when it comes first
                        return status(handle)
                scanner._functions = Watched()
                waiting = threading.Thread(target=lambda: answers.append(scanner.wait_for_change()))
                waiting.start()
                called.wait()
                scanner.close()
                waiting.join()
                try:
                    scanner.wait_for_change()
                except RuntimeError as error:
                    print(error)
            print(len(answers))
            """, self.scenario())
        self.assertEqual(out, f'False\n"{NAME}" was closed\n1\n')

    def test_waits_that_cannot_end_are_refused(self):
        out = self.run_host("""
            with vyra.Library() as library:
                first = library.open("one")
                video = first.video()
                second = library.open("two")
                def told(call):
                    try:
                        call()
                    except RuntimeError as error:
                        print(error)
                told(lambda: video.wait(timeout=20))
                told(second.video)
                video.close()
                told(video.poll)
                first.close()
                told(lambda: library.open("one"))
                second.close()
                library.open("one").close()
            """, self.scenario(frame_rate=0, scanners=[{"name": "one"}, {"name": "two"}]))
        self.assertEqual(out.splitlines(), [
            '"one" delivers no images, since another scanner was opened: open it anew',
            'the video of "one" runs already: close it first', "this video was closed",
            'opening "one" would displace "two": close scanners in reverse order of opening'])

    def test_buffers_stay_until_the_library_has_given_them_back(self):
        out = self.run_host(f"""
            import gc, weakref
            from vyra import _interface
            class Refusing:  # the library's functions, some of which fail
                def __init__(self, functions):
                    self.functions, self.results = functions, {{}}
                def __getattr__(self, name):
                    results = self.results.get(name)
                    return (lambda *_: results.pop(0)) if results else getattr(self.functions, name)
            with vyra.Library() as library:
                functions = library._functions = Refusing(library._functions)
                def buffers_of_a_capture(stops, closes):
                    scanner = library.open({NAME!r})
                    video = scanner.video(requests=1)
                    kept = weakref.ref(video._pending[0])
                    functions.results = dict(VyraStopVideo=stops, VyraCloseDevice_N=closes)
                    try:
                        video.close()
                    except vyra.Error as error:
                        print(error.status, kept() is not None)
                    try:
                        scanner.close()
                    except vyra.Error as error:
                        print(error.status)
                    del video
                    gc.collect()
                    return kept() is not None
                print(buffers_of_a_capture([], []))
                print(buffers_of_a_capture([9000], []))
                print(buffers_of_a_capture([9000], [9000, 9001]))
                print(buffers_of_a_capture([9000], [9000] * 12))
            """, self.scenario())
        self.assertEqual(out.split(), ["False", "9000", "True", "False", "9000", "True", "False", "9000", "True", "9000", "True"])

    def test_an_image_is_not_lost_for_a_request_that_is_refused(self):
        out = self.run_host(f"""
            from vyra import _interface
            with vyra.Library() as library, library.open({NAME!r}) as scanner, scanner.video(requests=1) as video:
                submit = video._functions.VyraSubmitVideoRequest
                video._functions.VyraSubmitVideoRequest = lambda *_: 9001
                print(video.wait(timeout=20).width)
                try:
                    video.poll()
                except vyra.Error as error:
                    print(error.status)
                video._functions.VyraSubmitVideoRequest = submit
                print(video.wait(timeout=20).width)
            """, self.scenario())
        self.assertEqual(out, "1600\n9001\n1600\n")

    def test_threads_may_poll_while_another_closes(self):
        out = self.run_host(f"""
            import threading
            ends = []
            def watch(video):
                try:
                    for _ in video:
                        pass
                except RuntimeError as error:
                    ends.append(str(error))
            with vyra.Library() as library, library.open({NAME!r}) as scanner:
                for _ in range(3):
                    video = scanner.video(requests=2)
                    threads = [threading.Thread(target=watch, args=(video,)) for _ in range(3)]
                    for thread in threads:
                        thread.start()
                    video.wait(timeout=20)
                    video.close()
                    for thread in threads:
                        thread.join()
            print(set(ends) <= {{"this video was closed"}})
            """, self.scenario(frame_rate=500))
        self.assertEqual(out, "True\n")

    def test_the_process_may_end_with_everything_open(self):
        out = self.run_host("""
            import threading
            library = vyra.Library(on_plug=print)
            library.on_power(print)
            scanner = library.open(library.scanners()[0])
            video = scanner.video()
            video.wait(timeout=20)
            threading.Thread(target=scanner.wait_for_change, daemon=True).start()
            print("end")
            """, self.scenario(frame_rate=100))
        self.assertEqual(out, "end\n")


if __name__ == "__main__":
    unittest.main()
