"""A file to its descriptive table in a process of its own, with pandas. usage: describe_csv.py FILE"""
import json
import sys

import pandas

frame = pandas.read_csv(sys.argv[1])
table = frame.describe()
missing = frame.isna().sum()
print(json.dumps([float(value) for column in table for value in
                  [missing[column], *table.loc[["count", "min", "max", "mean", "std"], column]]]))
