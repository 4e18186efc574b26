using System.Reflection;
using System.Runtime.InteropServices;

// What this assembly says of itself. The build stamps these lines.
[assembly: AssemblyTitle("Greeting")]
[assembly: AssemblyDescription("Words of welcome")]
[assembly: AssemblyConfiguration("")]
[assembly: AssemblyCompany("")]
[assembly: AssemblyProduct("Hello")]
[assembly: AssemblyCopyright("Copyright © 2006")]
[assembly: AssemblyTrademark("")]
[assembly: AssemblyCulture("")]

// COM does not see the types of this assembly.
[assembly: ComVisible(false)]
[assembly: Guid("2d3c5a1e-84b7-4f0c-9a56-7be1d0c3f824")]

// Major, minor, build and revision.
[assembly: AssemblyVersion("1.0.0.0")]
[assembly: AssemblyFileVersion("1.0.0.0")]
