"""PROFIBUS-DP slave device types: devices, configurations, diagnoses, and what is wrong with their files.

>>> import typdescriptor
>>> device = typdescriptor.load("RIO40A17.GSE")
>>> configuration = device.configure(modules={5: "40-4AI Pt100"}, values={(5, "Sensor"): "Ni100"})
>>> configuration.chk_cfg.hex(" ")
'00 30 10 00 53'
"""

from ._native import *  # pylint: disable=wildcard-import
