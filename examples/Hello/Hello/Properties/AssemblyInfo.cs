using System.Reflection;
using System.Runtime.InteropServices;

// What this assembly says of itself. The build stamps these lines.
[assembly: AssemblyTitle("Hello")]
[assembly: AssemblyDescription("Greets whoever runs it")]
[assembly: AssemblyConfiguration("")]
[assembly: AssemblyCompany("")]
[assembly: AssemblyProduct("Hello")]
[assembly: AssemblyCopyright("Copyright © 2006")]
[assembly: AssemblyTrademark("")]
[assembly: AssemblyCulture("")]

// COM does not see the types of this assembly.
[assembly: ComVisible(false)]
[assembly: Guid("e81b6f93-5c2a-4d7e-b0f4-6a9c1d5e3b70")]

// Major, minor, build and revision.
[assembly: AssemblyVersion("1.0.0.0")]
[assembly: AssemblyFileVersion("1.0.0.0")]
