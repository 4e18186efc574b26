[assembly: AssemblyTitle("x
[assembly: AssemblyTitle(
[assembly: X
assembly:
