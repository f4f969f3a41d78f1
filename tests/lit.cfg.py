import os
import lit.formats

config.name = "krtparse"
config.test_format = lit.formats.ShTest(execute_external=True)
config.suffixes = [".c", ".cpp", ".test"]
config.excludes = ["Inputs", "unit"]
config.test_source_root = os.path.dirname(__file__)
lit_config.load_config(config, lit_config.params["site_config"])
config.test_exec_root = os.path.join(config.krt_bin, "tests", "lit")
config.environment["PATH"] = config.krt_bin + os.pathsep + os.environ["PATH"]
for variable in ("ASAN_OPTIONS", "UBSAN_OPTIONS"):
    if variable in os.environ:
        config.environment[variable] = os.environ[variable]
config.substitutions.append(("%krtparse", os.path.join(config.krt_bin, "krtparse")))
# A tree on one line is what patterns match best.
config.substitutions.append(("%ifdump_tree", os.path.join(config.krt_bin, "ifdump")))
config.substitutions.append(("%ifdump", os.path.join(config.krt_bin, "ifdump --flat")))
config.substitutions.append(("%ifrun", os.path.join(config.krt_bin, "ifrun")))
config.substitutions.append(("%FileCheck", config.krt_filecheck))
config.substitutions.append(("%root", config.krt_source))
# What a test may ask for with REQUIRES.
if os.path.exists("/usr/include/boost/preprocessor.hpp"):
    config.available_features.add("boost-preprocessor")
