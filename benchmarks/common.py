"""What the comparisons share: running a side, naming the machine, printing."""
import json
import pathlib
import platform
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
PYTHON = "/usr/bin/python3"


def lines(*command):
    """Output of a command, line by line as JSON."""
    output = subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE, text=True).stdout
    return [json.loads(line) for line in output.splitlines()]


def heading(title):
    print(f"\n{title}\n{'-' * len(title)}")


def first_line(*command):
    found = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return found.stdout.splitlines()[0]


def print_machine(build):
    model = next(line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name"))
    cores = subprocess.run(["nproc"], stdout=subprocess.PIPE, text=True).stdout.strip()
    print(f"machine   {model}, {cores} cores, {platform.system()} {platform.release()}")
    print(f"compiler  {first_line('g++', '--version')}, build {build.name}")
    print(f"engine    {first_line(str(build / 'numcore'), '--version')}")
    versions = "import numpy, pandas, sys; print('python', sys.version.split()[0], 'numpy', numpy.__version__, 'pandas', pandas.__version__)"
    print(f"peers     {first_line(PYTHON, '-c', versions)}, {first_line('Rscript', '--version')}")
